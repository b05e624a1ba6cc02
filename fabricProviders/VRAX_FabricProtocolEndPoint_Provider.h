// The fabric has the endpoints of the node ports that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICPROTOCOLENDPOINT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICPROTOCOLENDPOINT_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_FabricProtocolEndPoint_Methods.h"

namespace cimple
{

class VRAX_FabricProtocolEndPoint_Provider
    : public Association_Provider<&VRAX_FabricProtocolEndPoint::Antecedent,
                                  &VRAX_FabricProtocolEndPoint::Dependent>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.first<VRAX_Fabric>().withEach<VRAX_ProtocolEndpoint>(belongsToFabric<VRAX_ProtocolEndpoint>);
    }
};

} // namespace cimple

#endif
