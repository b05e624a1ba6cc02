// A node has the port by which it is attached.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFFCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFFCNODE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCNode_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "VRAX_MemberOfFCNode_Methods.h"

namespace cimple
{

class VRAX_MemberOfFCNode_Provider : public Association_Provider_Base<VRAX_MemberOfFCNode_Provider,
                                                                      VRAX_MemberOfFCNode,
                                                                      VRAX_FCNode_Provider,
                                                                      VRAX_FCPort_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_MemberOfFCNode_Provider";
    static constexpr auto kFirstRole = &VRAX_MemberOfFCNode::Collection;
    static constexpr auto kSecondRole = &VRAX_MemberOfFCNode::Member;

    void build(Map_Writer<VRAX_MemberOfFCNode>& map);
};

} // namespace cimple

#endif
