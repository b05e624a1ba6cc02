// Two endpoints are linked.
#include "fabricProviders/VRAX_ActiveConnection_Provider.h"

#include "common/Fcs_List.h"
#include "common/Text_Index.h"
#include "fabricProviders/topology_keys.h"

#include <strings.h>

namespace cimple
{

void VRAX_ActiveConnection_Provider::build(Map_Writer<VRAX_ActiveConnection>& map)
{
    if (end<VRAX_ProtocolEndpoint>().first() == nullptr)
        return;
    const Text_Index<VRAX_ProtocolEndpoint> endpoints(end<VRAX_ProtocolEndpoint>(), &endpointWwn);
    const Fcs_List<xpl_fcsSwitch> switches(&xpl_fcsGetSwitchList);
    if (switches.error() != XPL_OK)
        failLoad("Unable to get fabric switch list");

    for (const xpl_fcsSwitch& one : switches)
    {
        const Fcs_List<xpl_fcsPort> ports(&xpl_fcsGetPortList, one.domainId);
        // A switch that left the fabric since has no links any more.
        if (ports.error() != XPL_OK && ports.error() != XPL_UNKNOWN_KEY)
            failLoad("Unable to get fabric port list");

        for (const xpl_fcsPort& port : ports)
        {
            const VRAX_ProtocolEndpoint* own = endpoints.find(port.wwn);
            if (own == nullptr)
                continue;
            // Nothing is known of the links of a port whose topology cannot be read.
            const Fcs_List<xpl_fcsAttached> attached(&xpl_fcsGetPortTopology, one.domainId, port.number);
            for (const xpl_fcsAttached& linked : attached)
            {
                const VRAX_ProtocolEndpoint* other = endpoints.find(linked.wwn);
                if (other == nullptr || other == own)
                    continue;
                // Both ends of a link between switches report it; the second report is dropped as a
                // duplicate.
                const bool ownFirst =
                    linked.kind == XPL_FCS_NODE_PORT || strcasecmp(port.wwn, linked.wwn) < 0;
                join(map, ownFirst ? own : other, ownFirst ? other : own);
            }
        }
    }
}

} // namespace cimple
