// The switch's events.
#include "platform/switch_events.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"

#include <cstdio>
#include <exception>

using namespace simulator;

extern "C" void xpl_swReceiveEvents(xpl_SwitchEventReceiver receiver, void* context)
{
    // A call that a test makes fail leaves nobody who receives.
    const bool refused = beginCall(Call::receiveEvents) != XPL_OK;
    try
    {
        Engine::instance().events.receive(refused ? nullptr : receiver, context);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "simulated switch: no thread for events: %s\n", error.what());
    }
}
