// A node has the port by which it is attached.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFFCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFFCNODE_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_FCNode_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "VRAX_MemberOfFCNode_Methods.h"

namespace cimple
{

class VRAX_MemberOfFCNode_Provider
    : public Association_Provider<&VRAX_MemberOfFCNode::Collection, &VRAX_MemberOfFCNode::Member>
{
  public:
    void build(Pairs& pairs) { pairs.equal<VRAX_FCNode, VRAX_FCPort>(nodePortWwn, attachedPortWwn); }
};

} // namespace cimple

#endif
