// The zone set that the fabric enforces.
#ifndef FABRICPROVIDERS_VRAX_FABRICZONESET_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICZONESET_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/zoning_pairs.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"

#include "VRAX_FabricZoneSet_Methods.h"

namespace cimple
{

class VRAX_FabricZoneSet_Provider
    : public Association_Provider<&VRAX_FabricZoneSet::Antecedent, &VRAX_FabricZoneSet::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_FabricZoneSet";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FabricZoneSet::One or more Key Properties are not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withEach<VRAX_ZoneSet>(isEnforced<VRAX_ZoneSet>); }
};

} // namespace cimple

#endif
