// What happens to those who may log in to the local switch.
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"

namespace simulator
{
namespace
{

template <void (FabricModel::*CHANGE)(const std::string&, std::uint64_t)>
std::string changed(const Words& values)
{
    Engine::instance().write([&](FabricModel& model, std::uint64_t now) { (model.*CHANGE)(values[0], now); });
    return {};
}

} // namespace

std::vector<Verb> userVerbs()
{
    return {
        {"user add NAME", "somebody may log in", changed<&FabricModel::addUser>},
        {"user remove NAME", "somebody may no longer", changed<&FabricModel::removeUser>},
        {"user password NAME", "somebody gets another password", changed<&FabricModel::changePassword>},
        {"user refuse NAME", "somebody fails to log in, known or not", changed<&FabricModel::refuseLogin>},
    };
}

} // namespace simulator
