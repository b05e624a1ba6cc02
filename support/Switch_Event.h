// What the switch has told of one event, kept until an indication's thread gets to it.
#ifndef SUPPORT_SWITCH_EVENT_H
#define SUPPORT_SWITCH_EVENT_H

#include "platform/data_cache.h"
#include "platform/switch_events.h"

#include <cimple/cimple.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace cimple
{

// A copy of the firmware's record (platform/switch_events.h says which type has which texts), safe to keep.
// Null texts are empty ones, and texts and arrays that are absurdly long are cut.
class Switch_Event
{
  public:
    static constexpr std::size_t kLongestText = 255;
    static constexpr std::size_t kMostValues = 64;

    explicit Switch_Event(const xpl_SwitchEvent& event);
    virtual ~Switch_Event();
    Switch_Event(const Switch_Event&) = delete;
    Switch_Event& operator=(const Switch_Event&) = delete;

    const std::int32_t type;
    const Wwn switchWwn;
    const Wwn fabricWwn;
    const Wwn portWwn;
    const std::string subject;
    const std::string value;
    const std::string location;
    const Array_uint16 status; // values of OperationalStatus (CIM_ManagedSystemElement)
    const Array_uint16 previousStatus;
    const bool isLocal;
};

} // namespace cimple

#endif
