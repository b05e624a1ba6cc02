// What registered profiles and sub-profiles have in common.
#ifndef COMMON_PROFILES_H
#define COMMON_PROFILES_H

#include "common/map_access.h"
#include "switchaccess/CacheLock.h"

namespace cimple
{

// What the local switch is for the fabric; the load of `source` fails when the data cache cannot be read.
inline Switch_Role localSwitchRole(const char* source, int line = __builtin_LINE())
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, source, line);
    return DataCache::instance()->isTransparentSwitch() ? Switch_Role::Transparent : Switch_Role::Domain;
}

// The profile or sub-profile of that name; null when it is not published.
template <class PROFILE>
const PROFILE* profileOf(const Map_View<PROFILE>& all, const char* name)
{
    const String id = VRAX_Maps::formatInstanceID(name);
    for (const PROFILE* one : all)
        if (one->InstanceID.value == id)
            return one;
    return nullptr;
}

// How clients learn of a profile, as CIM_RegisteredProfile.AdvertiseTypes and AdvertiseTypeDescriptions say
// it.
struct Advertising
{
    uint16 type;
    const char* description;
};
constexpr Advertising kNotAdvertised = {2, "Not Advertised"};
constexpr Advertising kAdvertisedBySlp = {3, "SLP"};

// Sets all that is published of a profile or sub-profile, from its row in the table of its class.
template <class PROFILE, class ENTRY>
void setProfile(PROFILE& profile, const ENTRY& entry, uint16 organization, const Advertising& advertising)
{
    profile.InstanceID.set(VRAX_Maps::formatInstanceID(entry.name));
    profile.RegisteredName.set(entry.name);
    profile.RegisteredVersion.set(entry.version);
    profile.RegisteredOrganization.set(organization);
    profile.AdvertiseTypes.set(Array_uint16::make(advertising.type));
    profile.AdvertiseTypeDescriptions.set(Array_String::make(advertising.description));
}

} // namespace cimple

#endif
