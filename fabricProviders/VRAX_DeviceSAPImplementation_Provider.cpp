// A port implements the endpoint of its name.
#include "fabricProviders/VRAX_DeviceSAPImplementation_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_DeviceSAPImplementation_Provider::build(Map_Writer<VRAX_DeviceSAPImplementation>& map)
{
    joinEqual<VRAX_FCPort, VRAX_ProtocolEndpoint>(map, &portWwn, &endpointWwn);
}

} // namespace cimple
