// The logical network has every endpoint.
#include "fabricProviders/VRAX_MemberOfLogicalNetwork_Provider.h"

namespace cimple
{

void VRAX_MemberOfLogicalNetwork_Provider::build(Map_Writer<VRAX_MemberOfLogicalNetwork>& map)
{
    joinFirstWithEach<VRAX_LogicalNetwork, VRAX_ProtocolEndpoint>(map);
}

} // namespace cimple
