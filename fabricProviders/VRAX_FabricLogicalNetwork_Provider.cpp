// The fabric has its logical network.
#include "fabricProviders/VRAX_FabricLogicalNetwork_Provider.h"

namespace cimple
{

void VRAX_FabricLogicalNetwork_Provider::build(Map_Writer<VRAX_FabricLogicalNetwork>& map)
{
    joinFirst<VRAX_Fabric, VRAX_LogicalNetwork>(map);
}

} // namespace cimple
