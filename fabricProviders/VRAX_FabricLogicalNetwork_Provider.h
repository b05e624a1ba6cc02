// The fabric has its logical network.
#ifndef FABRICPROVIDERS_VRAX_FABRICLOGICALNETWORK_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICLOGICALNETWORK_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_LogicalNetwork_Provider.h"

#include "VRAX_FabricLogicalNetwork_Methods.h"

namespace cimple
{

class VRAX_FabricLogicalNetwork_Provider
    : public Association_Provider_Base<VRAX_FabricLogicalNetwork_Provider,
                                       VRAX_FabricLogicalNetwork,
                                       VRAX_Fabric_Provider,
                                       VRAX_LogicalNetwork_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FabricLogicalNetwork_Provider";
    static constexpr auto kFirstRole = &VRAX_FabricLogicalNetwork::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FabricLogicalNetwork::Dependent;

    void build(Map_Writer<VRAX_FabricLogicalNetwork>& map);
};

} // namespace cimple

#endif
