// The local switch hosts every zone.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHZONE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHZONE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_FCSwitchZone_Methods.h"

namespace cimple
{

class VRAX_FCSwitchZone_Provider
    : public Association_Provider<&VRAX_FCSwitchZone::Antecedent, &VRAX_FCSwitchZone::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_FCSwitchZone instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchZone::One or more Key Properties are not populated";

    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_Zone>(); }
};

} // namespace cimple

#endif
