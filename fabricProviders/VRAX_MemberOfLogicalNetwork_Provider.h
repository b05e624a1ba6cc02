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
    : public Association_Provider_Base<VRAX_MemberOfLogicalNetwork_Provider,
                                       VRAX_MemberOfLogicalNetwork,
                                       VRAX_LogicalNetwork_Provider,
                                       VRAX_ProtocolEndpoint_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_MemberOfLogicalNetwork_Provider";
    static constexpr auto kFirstRole = &VRAX_MemberOfLogicalNetwork::Collection;
    static constexpr auto kSecondRole = &VRAX_MemberOfLogicalNetwork::Member;

    void build(Map_Writer<VRAX_MemberOfLogicalNetwork>& map);
};

} // namespace cimple

#endif
