// Two endpoints are linked.
#ifndef FABRICPROVIDERS_VRAX_ACTIVECONNECTION_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ACTIVECONNECTION_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_ActiveConnection_Methods.h"

namespace cimple
{

// A switch port's endpoint is the Antecedent and the attached node port's the Dependent; of a link between
// two switches the endpoint with the lower name is the Antecedent. A link whose ends are not both published
// is left out.
class VRAX_ActiveConnection_Provider : public Association_Provider_Base<VRAX_ActiveConnection_Provider,
                                                                        VRAX_ActiveConnection,
                                                                        VRAX_ProtocolEndpoint_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_ActiveConnection_Provider";
    static constexpr auto kFirstRole = &VRAX_ActiveConnection::Antecedent;
    static constexpr auto kSecondRole = &VRAX_ActiveConnection::Dependent;

    void build(Map_Writer<VRAX_ActiveConnection>& map);
};

} // namespace cimple

#endif
