// The fabric has the nodes that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCNODE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCNode_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCNode_Methods.h"

namespace cimple
{

class VRAX_FabricFCNode_Provider : public Association_Provider_Base<VRAX_FabricFCNode_Provider,
                                                                    VRAX_FabricFCNode,
                                                                    VRAX_Fabric_Provider,
                                                                    VRAX_FCNode_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FabricFCNode_Provider";
    static constexpr auto kFirstRole = &VRAX_FabricFCNode::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FabricFCNode::Dependent;

    void build(Map_Writer<VRAX_FabricFCNode>& map);
};

} // namespace cimple

#endif
