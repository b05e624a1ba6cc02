// What the switch has told of one event, kept until an indication's thread gets to it.
#include "support/Switch_Event.h"

#include <algorithm>
#include <cstring>

namespace cimple
{

namespace
{

std::string copied(const char* text)
{
    return text != nullptr ? std::string(text, strnlen(text, Switch_Event::kLongestText)) : std::string();
}

Array_uint16 copied(const std::uint16_t* values, std::size_t count)
{
    Array_uint16 result;
    if (values != nullptr)
        result.append(values, std::min(count, Switch_Event::kMostValues));
    return result;
}

} // namespace

Switch_Event::Switch_Event(const xpl_SwitchEvent& event)
    : type(event.type), switchWwn(copied(event.switchWwn)), fabricWwn(copied(event.fabricWwn)),
      portWwn(copied(event.portWwn)), subject(copied(event.subject)), value(copied(event.value)),
      location(copied(event.location)), status(copied(event.status, event.statusCount)),
      previousStatus(copied(event.previousStatus, event.previousStatusCount)), isLocal(event.isLocal)
{
}

Switch_Event::~Switch_Event() = default;

} // namespace cimple
