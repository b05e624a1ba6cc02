// The zones that the fabric enforces.
#ifndef FABRICPROVIDERS_VRAX_FABRICZONE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICZONE_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/zoning_pairs.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_FabricZone_Methods.h"

namespace cimple
{

class VRAX_FabricZone_Provider
    : public Association_Provider<&VRAX_FabricZone::Antecedent, &VRAX_FabricZone::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FabricZone::One or more Key Properties are not populated";

    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withEach<VRAX_Zone>(isEnforced<VRAX_Zone>); }
};

} // namespace cimple

#endif
