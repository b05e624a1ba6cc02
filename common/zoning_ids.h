// The InstanceIDs of the zoning database: its state, the switch's WWN and a name, with colons in between.
#ifndef COMMON_ZONING_IDS_H
#define COMMON_ZONING_IDS_H

#include "platform/zoning_server.h"
#include "switchaccess/local_switch.h"

#include <cimple/cimple.h>

#include <cstring>
#include <string>

namespace cimple
{

// As the fabric enforces it, or as it is configured.
constexpr const char* kActive = "Active";
constexpr const char* kInactive = "Inactive";

inline String zoningId(const char* state, const char* switchWwn, const char* name)
{
    return String(String(state, ":", switchWwn).c_str(), ":", name);
}

// An alias is configured only and has no state.
inline String aliasId(const char* switchWwn, const char* name)
{
    return String(switchWwn, ":", name);
}

// What follows the nth colon; null when there are fewer.
inline const char* afterColon(const String& id, int n)
{
    const char* rest = id.c_str();
    while (n-- > 0 && rest != nullptr)
    {
        rest = std::strchr(rest, ':');
        rest += rest != nullptr;
    }
    return rest;
}

// Whether a long load tells how far it is, after so many zones or aliases.
constexpr bool isDueALine(std::size_t count)
{
    constexpr std::size_t kEvery = 200;
    return count % kEvery == 0;
}

// The name of the active zone set; empty when none is active.
class Active_Zone_Set
{
  public:
    Active_Zone_Set() { get_Active_ZoneSet(_name); }
    const char* name() const { return _name; }
    bool isNone() const { return _name[0] == '\0'; }

  private:
    char _name[kZoneNameSize] = "";
};

} // namespace cimple

#endif
