// The logical network has every endpoint.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFLOGICALNETWORK_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFLOGICALNETWORK_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_LogicalNetwork_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_MemberOfLogicalNetwork_Methods.h"

namespace cimple
{

class VRAX_MemberOfLogicalNetwork_Provider
    : public Association_Provider<&VRAX_MemberOfLogicalNetwork::Collection,
                                  &VRAX_MemberOfLogicalNetwork::Member>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_LogicalNetwork>().withEach<VRAX_ProtocolEndpoint>(); }
};

} // namespace cimple

#endif
