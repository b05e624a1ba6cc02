// What can happen to a port of the local switch.
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"

namespace simulator
{
namespace
{

template <void Change(PortScenario&)>
std::string changed(const Words& values)
{
    const int number = numberOf(values[0], "port");
    Engine::instance().write([number](FabricModel& model, std::uint64_t now)
                             { model.changePort(number, Change, now); });
    return {};
}

void pullCable(PortScenario& port)
{
    port.link = LinkState::down;
}

void plugCable(PortScenario& port)
{
    port.link = LinkState::automatic;
}

void lightUp(PortScenario& port)
{
    port.link = LinkState::up;
}

void fail(PortScenario& port)
{
    port.failed = true;
    port.diagnostics = DiagStatus::failed;
}

void repair(PortScenario& port)
{
    port.failed = false;
    port.diagnostics = DiagStatus::passed;
}

template <AdminState STATE>
void setAdminState(PortScenario& port)
{
    port.adminState = STATE;
}

} // namespace

std::vector<Verb> portVerbs()
{
    return {
        {"port NUMBER down", "the cable is pulled", changed<pullCable>},
        {"port NUMBER up", "the cable is plugged in again", changed<plugCable>},
        {"port NUMBER light", "the link is up, whether or not anything is attached", changed<lightUp>},
        {"port NUMBER fail", "its hardware fails, and its diagnostics", changed<fail>},
        {"port NUMBER repair", "its hardware works", changed<repair>},
        {"port NUMBER online", "an administrator switches it on", changed<setAdminState<AdminState::online>>},
        {"port NUMBER offline",
         "an administrator switches it off",
         changed<setAdminState<AdminState::offline>>},
        {"port NUMBER diagnostics",
         "an administrator tests it",
         changed<setAdminState<AdminState::diagnostics>>},
    };
}

} // namespace simulator
