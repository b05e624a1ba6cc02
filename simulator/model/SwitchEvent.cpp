// An event of the switch as the model raises it.
#include "simulator/model/SwitchEvent.h"

#include <string_view>

namespace simulator
{
namespace
{

// By type.
constexpr std::string_view kNames[] = {"none",
                                       "fabric added",
                                       "fabric removed",
                                       "fabric topology",
                                       "switch added",
                                       "switch removed",
                                       "switch status",
                                       "blade added",
                                       "blade removed",
                                       "blade status",
                                       "port created",
                                       "port deleted",
                                       "port status",
                                       "node logged in",
                                       "node logged out",
                                       "principal changed",
                                       "CPU added",
                                       "CPU removed",
                                       "CPU failed",
                                       "fan added",
                                       "fan removed",
                                       "fan failed",
                                       "power supply added",
                                       "power supply removed",
                                       "power supply failed",
                                       "user added",
                                       "user removed",
                                       "zone set activated",
                                       "zoning changed",
                                       "password changed",
                                       "login failed",
                                       "environment",
                                       "subscriptions changed"};
static_assert(sizeof kNames / sizeof kNames[0] == XPL_EVENT_SUBSCRIPTIONS_CHANGED + 1, "one for each type");

void add(std::string& text, const char* name, const std::string& value)
{
    if (!value.empty())
        text += std::string(" ") + name + "=" + value;
}

std::string listOf(const std::vector<std::uint16_t>& values)
{
    std::string list;
    for (const std::uint16_t value : values)
        list += (list.empty() ? "" : ",") + std::to_string(value);
    return list;
}

} // namespace

std::string textOf(const SwitchEvent& event)
{
    std::string text(kNames[event.type]);
    add(text, "fabric", event.fabricWwn);
    add(text, "switch", event.switchWwn);
    add(text, "port", event.portWwn);
    add(text, "subject", event.subject);
    add(text, "value", event.value);
    add(text, "location", event.location);
    add(text, "status", listOf(event.status));
    add(text, "was", listOf(event.previousStatus));
    return event.isLocal ? text + " local" : text;
}

xpl_SwitchEvent viewOf(const SwitchEvent& event)
{
    xpl_SwitchEvent view{};
    view.type = event.type;
    view.switchWwn = event.switchWwn.c_str();
    view.fabricWwn = event.fabricWwn.c_str();
    view.portWwn = event.portWwn.c_str();
    view.subject = event.subject.c_str();
    view.value = event.value.c_str();
    view.location = event.location.c_str();
    view.status = event.status.data();
    view.statusCount = static_cast<std::uint32_t>(event.status.size());
    view.previousStatus = event.previousStatus.data();
    view.previousStatusCount = static_cast<std::uint32_t>(event.previousStatus.size());
    view.isLocal = event.isLocal;
    return view;
}

} // namespace simulator
