// How much zoning the switch can hold.
#include "fabricProviders/VRAX_ZoningCapabilities_Provider.h"

#include "switchaccess/zone_members.h"

namespace cimple
{

namespace
{

constexpr uint32 ZONE_NAME_MAX_LEN = kZoneNameSize - 1;
constexpr uint16 ZONE_NAME_FORMAT = 3; // CIM_ZoneCapabilities: alphanumeric
constexpr uint16 kMemberTypes[] = {kMemberIsWwn, kMemberIsAddress, kMemberIsSwitchPort};

} // namespace

void VRAX_ZoningCapabilities_Provider::fill(VRAX_ZoningCapabilities& capabilities, const char* localWwn)
{
    xpl_fzsZoningLimitations limits = {};
    if (xpl_fzsGetZoningLimitations(hSwitch, &limits) != 0)
        fail("GetZoningLimitations failed");
    capabilities.InstanceID.set(localWwn);
    capabilities.ZoneNameMaxLen.set(ZONE_NAME_MAX_LEN);
    capabilities.ZoneNameFormat.set(ZONE_NAME_FORMAT);
    capabilities.MaxNumZoneSets.set(limits.zonesets);
    capabilities.MaxNumZone.set(limits.zones);
    capabilities.MaxNumZoneMembers.set(limits.zoneMembers);
    capabilities.MaxNumZonesPerZoneSet.set(limits.zonesPerZoneset);
    capabilities.MaxNumZoneAliases.set(limits.zoneAliases);
    capabilities.SupportedConnectivityMemberTypes.set(Array_uint16(kMemberTypes, std::size(kMemberTypes)));
}

} // namespace cimple
