// The local switch hosts every zone set.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHZONESET_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHZONESET_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"

#include "VRAX_FCSwitchZoneSet_Methods.h"

namespace cimple
{

class VRAX_FCSwitchZoneSet_Provider
    : public Association_Provider<&VRAX_FCSwitchZoneSet::Antecedent, &VRAX_FCSwitchZoneSet::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create instance VRAX_FCSwitchZoneSet";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchZoneSet::One or More Key Properties are not populated";

    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_ZoneSet>(); }
};

} // namespace cimple

#endif
