// A switch has the endpoints of its own ports.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHPROTOCOLENDPOINT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHPROTOCOLENDPOINT_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_FCSwitchProtocolEndPoint_Methods.h"

namespace cimple
{

class VRAX_FCSwitchProtocolEndPoint_Provider
    : public Association_Provider<&VRAX_FCSwitchProtocolEndPoint::Antecedent,
                                  &VRAX_FCSwitchProtocolEndPoint::Dependent>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCSwitch, VRAX_ProtocolEndpoint>(switchName, switchOf<VRAX_ProtocolEndpoint>);
    }
};

} // namespace cimple

#endif
