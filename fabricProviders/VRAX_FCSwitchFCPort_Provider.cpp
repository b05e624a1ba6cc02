// A switch has its own ports.
#include "fabricProviders/VRAX_FCSwitchFCPort_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_FCSwitchFCPort_Provider::build(Map_Writer<VRAX_FCSwitchFCPort>& map)
{
    joinEqual<VRAX_FCSwitch, VRAX_FCPort>(map, &switchName, &switchOf<VRAX_FCPort>);
}

} // namespace cimple
