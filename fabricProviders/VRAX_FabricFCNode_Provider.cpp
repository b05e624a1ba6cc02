// The fabric has the nodes that are attached to it.
#include "fabricProviders/VRAX_FabricFCNode_Provider.h"

namespace cimple
{

void VRAX_FabricFCNode_Provider::build(Map_Writer<VRAX_FabricFCNode>& map)
{
    joinFirstWithEach<VRAX_Fabric, VRAX_FCNode>(map);
}

} // namespace cimple
