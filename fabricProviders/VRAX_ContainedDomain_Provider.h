// The storage area network contains the fabric.
#ifndef FABRICPROVIDERS_VRAX_CONTAINEDDOMAIN_PROVIDER_H
#define FABRICPROVIDERS_VRAX_CONTAINEDDOMAIN_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_SAN_Provider.h"

#include "VRAX_ContainedDomain_Methods.h"

namespace cimple
{

class VRAX_ContainedDomain_Provider
    : public Association_Provider<&VRAX_ContainedDomain::GroupComponent, &VRAX_ContainedDomain::PartComponent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to Create the instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ContainedDomain::One or more Key Properties not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    void build(Pairs& pairs) { pairs.first<VRAX_SAN>().withFirst<VRAX_Fabric>(); }
};

} // namespace cimple

#endif
