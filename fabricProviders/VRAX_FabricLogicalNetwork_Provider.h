// The fabric has its logical network.
#ifndef FABRICPROVIDERS_VRAX_FABRICLOGICALNETWORK_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICLOGICALNETWORK_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_LogicalNetwork_Provider.h"

#include "VRAX_FabricLogicalNetwork_Methods.h"

namespace cimple
{

class VRAX_FabricLogicalNetwork_Provider : public Association_Provider<&VRAX_FabricLogicalNetwork::Antecedent,
                                                                       &VRAX_FabricLogicalNetwork::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withFirst<VRAX_LogicalNetwork>(); }
};

} // namespace cimple

#endif
