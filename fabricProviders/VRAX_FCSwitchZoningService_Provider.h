// The local switch hosts the zoning service.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHZONINGSERVICE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHZONINGSERVICE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ZoningService_Provider.h"

#include "VRAX_FCSwitchZoningService_Methods.h"

namespace cimple
{

class VRAX_FCSwitchZoningService_Provider
    : public Association_Provider<&VRAX_FCSwitchZoningService::Antecedent,
                                  &VRAX_FCSwitchZoningService::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_FCSwitchZoningService instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchZoningService::One or More Key Properties are not populated";

    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_ZoningService>(); }
};

} // namespace cimple

#endif
