// The fabric consists of its switches.
#include "fabricProviders/VRAX_FabricFCSwitch_Provider.h"

namespace cimple
{

void VRAX_FabricFCSwitch_Provider::build(Map_Writer<VRAX_FabricFCSwitch>& map)
{
    joinFirstWithEach<VRAX_Fabric, VRAX_FCSwitch>(map);
}

} // namespace cimple
