// The service through which clients change the zoning of the fabric.
#ifndef FABRICPROVIDERS_VRAX_ZONINGSERVICE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONINGSERVICE_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_ZoningService_Methods.h"

namespace cimple
{

// Each method holds the map's write lock, so that they come one after the other. What they return is a result
// code of CIM_ZoneService or of this service; the call itself succeeds always:
//   0 done, 1 no such service, 3 the service cannot be loaded, 4 failed, 5 invalid parameter,
//   6 somebody else has the switch's administrative mode, 7 no such zone, alias or service, 8 a member
//   already.
// Which of them stands for a missing or unloadable service differs from method to method.
class VRAX_ZoningService_Provider : public Local_Switch_Provider<VRAX_ZoningService>,
                                    public VRAX_ZoningService_Methods<VRAX_ZoningService_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_ZoningService instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ZoningService::One/More Key Properties are not Populated \n";

    static void fill(VRAX_ZoningService& service, const char* localWwn);

    // Straight to the switch; no map is touched, and the zone sets and zones show it after their next load.
    Invoke_Method_Status ActivateZoneSet(const VRAX_ZoningService* self,
                                         const CIM_ZoneSet* ZoneSet,
                                         const Property<boolean>& Activate,
                                         Property<uint32>& return_value);

    // These three put what they create into its map at once. The caller owns the instance in the out
    // parameter.
    Invoke_Method_Status CreateZoneSet(const VRAX_ZoningService* self,
                                       const Property<String>& ZoneSetName,
                                       CIM_ZoneSet*& ZoneSet,
                                       Property<uint32>& return_value);
    Invoke_Method_Status CreateZone(const VRAX_ZoningService* self,
                                    const Property<String>& ZoneName,
                                    const Property<uint16>& ZoneType,
                                    const Property<uint16>& ZoneSubType, // ignored
                                    CIM_Zone*& Zone,
                                    Property<uint32>& return_value);
    Invoke_Method_Status CreateZoneAlias(const VRAX_ZoningService* self,
                                         const Property<String>& CollectionAlias,
                                         CIM_NamedAddressCollection*& ZoneAlias,
                                         Property<uint32>& return_value);

    // Puts the zone into the set, and the pair into the map of their association.
    Invoke_Method_Status AddZone(const VRAX_ZoningService* self,
                                 const CIM_ZoneSet* ZoneSet,
                                 const CIM_Zone* Zone,
                                 Property<uint32>& return_value);

    // In an edit session of its own.
    Invoke_Method_Status AddZoneAlias(const VRAX_ZoningService* self,
                                      const CIM_Zone* Zone,
                                      const CIM_NamedAddressCollection* ZoneAlias,
                                      Property<uint32>& return_value);

    // Adds a new member to a zone or alias, in an edit session of its own. Domain and port are decimal:
    // "1:10". The membership that is answered has the identifier as it was given; loaded ones have the
    // switch's form.
    Invoke_Method_Status
    CreateZoneMembershipSettingData(const VRAX_ZoningService* self,
                                    const Property<uint16>& ConnectivityMemberType,
                                    const Property<String>& ConnectivityMemberID,
                                    const CIM_SystemSpecificCollection* SystemSpecificCollection,
                                    CIM_ZoneMembershipSettingData*& ZoneMembershipSettingData,
                                    Property<uint32>& return_value);

    // Adds the member of a known membership to a zone or alias as well. Domain and port are hexadecimal here,
    // as memberships are published.
    Invoke_Method_Status
    AddZoneMembershipSettingData(const VRAX_ZoningService* self,
                                 const CIM_SystemSpecificCollection* SystemSpecificCollection,
                                 const CIM_ZoneMembershipSettingData* ZoneMembershipSettingData,
                                 Property<uint32>& return_value);
};

} // namespace cimple

#endif
