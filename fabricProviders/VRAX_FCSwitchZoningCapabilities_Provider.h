// The zoning capabilities of the local switch.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHZONINGCAPABILITIES_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHZONINGCAPABILITIES_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ZoningCapabilities_Provider.h"

#include "VRAX_FCSwitchZoningCapabilities_Methods.h"

namespace cimple
{

class VRAX_FCSwitchZoningCapabilities_Provider
    : public Association_Provider<&VRAX_FCSwitchZoningCapabilities::ManagedElement,
                                  &VRAX_FCSwitchZoningCapabilities::Capabilities>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed =
        "Failed to create VRAX_FCSwitchZoningCapabilities instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchZoningCapabilities::One or More Key Properties are not populated";
    // So spelled, as operators search for it.
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instane in map";

    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_ZoningCapabilities>(); }
};

} // namespace cimple

#endif
