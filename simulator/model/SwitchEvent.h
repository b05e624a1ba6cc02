// An event of the switch as the model raises it.
#ifndef SIMULATOR_MODEL_SWITCHEVENT_H
#define SIMULATOR_MODEL_SWITCHEVENT_H

#include "platform/switch_events.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulator
{

// Fields as those of xpl_SwitchEvent. Texts that the event does not have are empty.
struct SwitchEvent
{
    xpl_SwitchEventType type = XPL_EVENT_NONE;
    std::string fabricWwn;
    std::string switchWwn;
    std::string portWwn;
    std::string subject;
    std::string value;
    std::string location;
    std::vector<std::uint16_t> status;
    std::vector<std::uint16_t> previousStatus;
    bool isLocal = false;
};

// "port status fabric=... switch=... port=... status=10 was=2": what the event has, in this order: fabric,
// switch, port, subject, value, location, status, was, local.
std::string textOf(const SwitchEvent& event);

// Valid while the event is there and unchanged.
xpl_SwitchEvent viewOf(const SwitchEvent& event);

} // namespace simulator

#endif
