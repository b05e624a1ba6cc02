// The storage area network contains the fabric.
#ifndef FABRICPROVIDERS_VRAX_CONTAINEDDOMAIN_PROVIDER_H
#define FABRICPROVIDERS_VRAX_CONTAINEDDOMAIN_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_SAN_Provider.h"

#include "VRAX_ContainedDomain_Methods.h"

namespace cimple
{

class VRAX_ContainedDomain_Provider : public Association_Provider_Base<VRAX_ContainedDomain_Provider,
                                                                       VRAX_ContainedDomain,
                                                                       VRAX_SAN_Provider,
                                                                       VRAX_Fabric_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_ContainedDomain_Provider";
    static constexpr auto kFirstRole = &VRAX_ContainedDomain::GroupComponent;
    static constexpr auto kSecondRole = &VRAX_ContainedDomain::PartComponent;

    void build(Map_Writer<VRAX_ContainedDomain>& map);
};

} // namespace cimple

#endif
