// Two endpoints are linked.
#include "fabricProviders/VRAX_ActiveConnection_Provider.h"

#include "common/topology_keys.h"
#include "switchaccess/Fcs_List.h"

#include <strings.h>

namespace cimple
{

namespace
{

// The order in which the ends of a link between switches are published.
bool isBefore(const VRAX_ProtocolEndpoint& a, const VRAX_ProtocolEndpoint& b)
{
    const int order = strcasecmp(a.Name.value.c_str(), b.Name.value.c_str());
    return order < 0 ||
           (order == 0 && strcasecmp(a.SystemName.value.c_str(), b.SystemName.value.c_str()) < 0);
}

// The WWN of a switch by its domain ID; null when it has none or is not in the list.
const char* switchWwn(const Fcs_List<xpl_fcsSwitch>& switches, std::int32_t domainId)
{
    for (const xpl_fcsSwitch& one : switches)
        if (one.domainId == domainId)
            return one.wwn;
    return nullptr;
}

} // namespace

void VRAX_ActiveConnection_Provider::build(Pairs& pairs)
{
    if (pairs.all<VRAX_ProtocolEndpoint>().first() == nullptr)
        return;
    const Text_Index<VRAX_ProtocolEndpoint, Two_Texts> endpoints(pairs.all<VRAX_ProtocolEndpoint>(),
                                                                 endpointSystemAndWwn);
    const Fcs_List<xpl_fcsSwitch> switches(&xpl_fcsGetSwitchList);
    if (switches.error() != XPL_OK)
        fail("Unable to get fabric switch list");

    for (const xpl_fcsSwitch& one : switches)
    {
        const Fcs_List<xpl_fcsPort> ports(&xpl_fcsGetPortList, one.domainId);
        // A switch that left the fabric since has no links any more.
        if (ports.error() != XPL_OK && ports.error() != XPL_UNKNOWN_KEY)
            fail("Unable to get fabric port list");

        for (const xpl_fcsPort& port : ports)
        {
            if (isNoWwn(port.wwn))
                continue;
            const VRAX_ProtocolEndpoint* own = endpoints.find({one.wwn, port.wwn});
            if (own == nullptr)
                continue;
            const Fcs_List<xpl_fcsAttached> attached(&xpl_fcsGetPortTopology, one.domainId, port.number);
            for (const xpl_fcsAttached& linked : attached)
            {
                const bool isNode = linked.kind == XPL_FCS_NODE_PORT;
                const char* system = isNode ? kFabricSystem : switchWwn(switches, linked.domainId);
                if (system == nullptr || isNoWwn(linked.wwn))
                    continue;
                const VRAX_ProtocolEndpoint* other = endpoints.find({system, linked.wwn});
                if (other == nullptr || other == own)
                    continue;
                // Both ends of a link between switches report it; the second report is dropped as a
                // duplicate.
                if (isNode || isBefore(*own, *other))
                    pairs.join(*own, *other);
                else
                    pairs.join(*other, *own);
            }
        }
    }
}

} // namespace cimple
