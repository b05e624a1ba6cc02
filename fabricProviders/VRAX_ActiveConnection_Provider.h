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
// is left out, and so is one with an end that has no name yet.
class VRAX_ActiveConnection_Provider
    : public Association_Provider<&VRAX_ActiveConnection::Antecedent, &VRAX_ActiveConnection::Dependent>
{
  public:
    // Nothing is known of the links of a port whose topology cannot be read.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_fcsGetPortTopology"};

    void build(Pairs& pairs);
};

} // namespace cimple

#endif
