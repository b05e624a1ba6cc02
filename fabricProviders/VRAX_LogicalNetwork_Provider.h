// The Fibre Channel network that the fabric forms.
#ifndef FABRICPROVIDERS_VRAX_LOGICALNETWORK_PROVIDER_H
#define FABRICPROVIDERS_VRAX_LOGICALNETWORK_PROVIDER_H

#include "common/Principal_Switch_Provider.h"

#include "VRAX_LogicalNetwork_Methods.h"

namespace cimple
{

class VRAX_LogicalNetwork_Provider : public Principal_Switch_Provider<VRAX_LogicalNetwork>
{
  public:
    // While the fabric forms there is no network to publish; the domains' loads say so in the log.
    static constexpr Failure_Text kNoPrincipal = Failure_Text::silent();
    static constexpr Failure_Text kKeysMissing =
        "VRAX_LogicalNetwork::One or More Key Properties are not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    static void fill(VRAX_LogicalNetwork& network, const char* principalWwn)
    {
        network.InstanceID.set(principalWwn);
        network.ElementName.set(principalWwn);
    }
};

} // namespace cimple

#endif
