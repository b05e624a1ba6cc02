// The profiles that the switch implements.
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"

#include "common/profiles.h"

namespace cimple
{

namespace
{

struct Profile_Entry
{
    uint16 organization; // CIM_RegisteredProfile.RegisteredOrganization
    char name[41];
    char version[11];
    std::uint32_t flags; // for VRAX_Maps::checkFlags
};

constexpr uint16 kDmtf = 2;
constexpr uint16 kSnia = 11;

constexpr Profile_Entry kProfiles[] = {
    {kSnia, "Fabric", "1.1.0", 0},
    {kSnia, "Switch", "1.1.0", 1},
    {kSnia, "Server", "1.1.0", 1},
    {kDmtf, "Record Log", "1.0.0", 1},
};

} // namespace

void VRAX_RegisteredProfile_Provider::build(Map_Writer<VRAX_RegisteredProfile>& map)
{
    const Switch_Role role = localSwitchRole(kSource);
    for (const Profile_Entry& entry : kProfiles)
    {
        if (!VRAX_Maps::checkFlags(entry.flags, role))
            continue;
        Owned<VRAX_RegisteredProfile> profile = make();
        setProfile(*profile, entry, entry.organization, kAdvertisedBySlp);
        add(map, profile);
    }
}

} // namespace cimple
