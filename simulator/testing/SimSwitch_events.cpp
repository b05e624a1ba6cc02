// The test handle's verbs for users, switches and other people's zoning, and its view of what is told of
// them.
#include "simulator/engine/Engine.h"
#include "simulator/testing/SimSwitch.h"

#include <stdexcept>

namespace simulator
{
namespace
{

template <class Change> // void(FabricModel& model, uint64_t now)
auto change(Change one)
{
    return Engine::instance().write(one);
}

void changeZoning(const std::string& what,
                  const std::function<std::int32_t(FabricModel& model, std::uint64_t now)>& one)
{
    const std::int32_t status = change(one);
    if (status != XPL_OK)
        throw std::invalid_argument(what + ": the switch refuses with " + std::to_string(status));
}

} // namespace

void SimSwitch::setSwitchState(int domain, AdminState state)
{
    change([=](FabricModel& model, std::uint64_t now) { model.setSwitchState(domain, state, now); });
}

void SimSwitch::addUser(const std::string& name)
{
    change([&](FabricModel& model, std::uint64_t now) { model.addUser(name, now); });
}

void SimSwitch::removeUser(const std::string& name)
{
    change([&](FabricModel& model, std::uint64_t now) { model.removeUser(name, now); });
}

void SimSwitch::changePassword(const std::string& user)
{
    change([&](FabricModel& model, std::uint64_t now) { model.changePassword(user, now); });
}

void SimSwitch::refuseLogin(const std::string& user)
{
    change([&](FabricModel& model, std::uint64_t now) { model.refuseLogin(user, now); });
}

void SimSwitch::addZone(const std::string& name, const std::string& by)
{
    changeZoning("addZone " + name,
                 [&](FabricModel& model, std::uint64_t now)
                 {
                     return model.changeZoning(by,
                                               now,
                                               [&name](ZoningDatabase& configured)
                                               { return configured.addZone(name, ZoneType::soft); });
                 });
}

void SimSwitch::activateZoneSet(const std::string& name, const std::string& by)
{
    changeZoning("activateZoneSet " + name,
                 [&](FabricModel& model, std::uint64_t now) { return model.activateZoneSet(name, by, now); });
}

void SimSwitch::deactivateZoneSet(const std::string& by)
{
    changeZoning("deactivateZoneSet",
                 [&](FabricModel& model, std::uint64_t now) { return model.deactivateZoneSet(by, now); });
}

std::vector<std::string> SimSwitch::events() const
{
    return Engine::instance().probe.events();
}

std::vector<ListenerScenario> SimSwitch::listeners() const
{
    return Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                   { return model.cim().listenerScenarios(); });
}

std::vector<SubscriptionScenario> SimSwitch::subscriptions() const
{
    return Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                   { return model.cim().subscriptionScenarios(); });
}

} // namespace simulator
