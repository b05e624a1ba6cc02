// The local switch hosts every zone alias.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHZONEALIAS_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHZONEALIAS_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"

#include "VRAX_FCSwitchZoneAlias_Methods.h"

namespace cimple
{

class VRAX_FCSwitchZoneAlias_Provider
    : public Association_Provider<&VRAX_FCSwitchZoneAlias::Antecedent, &VRAX_FCSwitchZoneAlias::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create instance VRAX_FCSwitchZoneAlias";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchZoneAlias::One or more Key Properties are not populated";

    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_ZoneAlias>(); }
};

} // namespace cimple

#endif
