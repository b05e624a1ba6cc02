// The Fibre Channel network that the fabric forms.
#include "fabricProviders/VRAX_LogicalNetwork_Provider.h"

#include "common/principal_switch.h"

namespace cimple
{

void VRAX_LogicalNetwork_Provider::build(Map_Writer<VRAX_LogicalNetwork>& map)
{
    Owned<VRAX_LogicalNetwork> network = makeNull<VRAX_LogicalNetwork>();
    if (!network)
        failLoad("Unable to create instance of VRAX_LogicalNetwork");
    // While the fabric forms there is no network to publish; the domains' loads say so in the log.
    const Principal_Switch_Wwn wwn;
    if (wwn.text() == nullptr)
        throw Load_Failed();

    network->InstanceID.set(wwn.text());
    network->ElementName.set(wwn.text());

    insertChecked(map,
                  network,
                  "VRAX_LogicalNetwork::One or More Key Properties are not populated",
                  "Failed to insert instance in map");
}

} // namespace cimple
