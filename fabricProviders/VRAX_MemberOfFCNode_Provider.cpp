// A node has the port by which it is attached.
#include "fabricProviders/VRAX_MemberOfFCNode_Provider.h"

#include "fabricProviders/topology_keys.h"

namespace cimple
{

void VRAX_MemberOfFCNode_Provider::build(Map_Writer<VRAX_MemberOfFCNode>& map)
{
    joinEqual<VRAX_FCNode, VRAX_FCPort>(map, &nodePortWwn, &attachedPortWwn);
}

} // namespace cimple
