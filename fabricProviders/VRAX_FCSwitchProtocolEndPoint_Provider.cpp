// A switch has the endpoints of its own ports.
#include "fabricProviders/VRAX_FCSwitchProtocolEndPoint_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_FCSwitchProtocolEndPoint_Provider::build(Map_Writer<VRAX_FCSwitchProtocolEndPoint>& map)
{
    joinEqual<VRAX_FCSwitch, VRAX_ProtocolEndpoint>(map, &switchName, &switchOf<VRAX_ProtocolEndpoint>);
}

} // namespace cimple
