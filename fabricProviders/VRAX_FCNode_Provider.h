// The nodes that are attached to the fabric, one for each of their ports.
#ifndef FABRICPROVIDERS_VRAX_FCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCNODE_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_FCNode_Methods.h"

namespace cimple
{

class VRAX_FCNode_Provider : public Instance_Provider_Base<VRAX_FCNode_Provider, VRAX_FCNode>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FCNode_Provider";

    void build(Map_Writer<VRAX_FCNode>& map);
};

} // namespace cimple

#endif
