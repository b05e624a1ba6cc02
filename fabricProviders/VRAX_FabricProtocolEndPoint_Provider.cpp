// The fabric has the endpoints of the node ports that are attached to it.
#include "fabricProviders/VRAX_FabricProtocolEndPoint_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_FabricProtocolEndPoint_Provider::build(Map_Writer<VRAX_FabricProtocolEndPoint>& map)
{
    joinFirstWithEach<VRAX_Fabric, VRAX_ProtocolEndpoint>(map, &belongsToFabric<VRAX_ProtocolEndpoint>);
}

} // namespace cimple
