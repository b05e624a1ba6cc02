// The sub-profiles that the switch implements.
#include "serverProviders/VRAX_RegisteredSubProfile_Provider.h"

#include "common/profiles.h"

namespace cimple
{

const Sub_Profile_Entry registered_sub_profile_entries[registered_sub_profile_count] = {
    {2, "Switch Configuration Data", "Switch", "1.1.0", 1},
    {2, "Access Points", "Switch", "1.1.0", 1},
    {2, "Location", "Switch", "1.1.0", 1},
    {2, "Physical Package", "Switch", "1.1.0", 1},
    {2, "Software", "Switch", "1.1.0", 1},
    {2, "Blades", "Switch", "1.1.0", 0},
    {2, "Zone Control", "Fabric", "1.1.0", 0},
    {2, "Enhanced Zoning and Enhanced Zoning Control", "Fabric", "1.1.0", 0},
    {2, "Indication", "Server", "1.1.0", 1},
};

void VRAX_RegisteredSubProfile_Provider::buildFrom(Map_Writer<VRAX_RegisteredSubProfile>& map,
                                                   const Locked_Ends& ends)
{
    const Map_View<VRAX_RegisteredProfile> profiles = ends.view<VRAX_RegisteredProfile>();
    const Switch_Role role = localSwitchRole(kSource);
    for (const Sub_Profile_Entry& entry : registered_sub_profile_entries)
    {
        const VRAX_RegisteredProfile* parent = profileOf(profiles, entry.parent);
        if (parent == nullptr || !VRAX_Maps::checkFlags(entry.flags, role))
            continue;
        Owned<VRAX_RegisteredSubProfile> part = makeDefaulted();
        setProfile(*part, entry, parent->RegisteredOrganization.value, kNotAdvertised);
        add(map, part);
    }
}

} // namespace cimple
