// The zones: those that are configured, and those that the fabric enforces.
#ifndef FABRICPROVIDERS_VRAX_ZONE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONE_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_Zone_Methods.h"

namespace cimple
{

// Values of CIM_Zone.ZoneType. What the hardware enforces has no value of its own.
constexpr uint16 kZoneIsOther = 1;
constexpr uint16 kZoneIsDefault = 2;

class VRAX_Zone_Provider : public Instance_Provider<VRAX_Zone>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_Zone instance";
    static constexpr Failure_Text kKeysMissing = "VRAX_Zone::One or More Key Properties are not populated";

    void build(Map_Writer<VRAX_Zone>& map);

    // Removes the zone from the configured database; 90 when that fails.
    Delete_Instance_Status delete_instance(const VRAX_Zone* instance);
};

} // namespace cimple

#endif
