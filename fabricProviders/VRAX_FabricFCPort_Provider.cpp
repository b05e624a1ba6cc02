// The fabric has the node ports that are attached to it.
#include "fabricProviders/VRAX_FabricFCPort_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_FabricFCPort_Provider::build(Map_Writer<VRAX_FabricFCPort>& map)
{
    joinFirstWithEach<VRAX_Fabric, VRAX_FCPort>(map, &belongsToFabric<VRAX_FCPort>);
}

} // namespace cimple
