// The fabric has the nodes that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCNODE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCNode_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCNode_Methods.h"

namespace cimple
{

class VRAX_FabricFCNode_Provider
    : public Association_Provider<&VRAX_FabricFCNode::Antecedent, &VRAX_FabricFCNode::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withEach<VRAX_FCNode>(); }
};

} // namespace cimple

#endif
