// A switch has the endpoints of its own ports.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHPROTOCOLENDPOINT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHPROTOCOLENDPOINT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_FCSwitchProtocolEndPoint_Methods.h"

namespace cimple
{

class VRAX_FCSwitchProtocolEndPoint_Provider
    : public Association_Provider_Base<VRAX_FCSwitchProtocolEndPoint_Provider,
                                       VRAX_FCSwitchProtocolEndPoint,
                                       VRAX_FCSwitch_Provider,
                                       VRAX_ProtocolEndpoint_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FCSwitchProtocolEndPoint_Provider";
    static constexpr auto kFirstRole = &VRAX_FCSwitchProtocolEndPoint::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FCSwitchProtocolEndPoint::Dependent;

    void build(Map_Writer<VRAX_FCSwitchProtocolEndPoint>& map);
};

} // namespace cimple

#endif
