// The nodes that are attached to the fabric, one for each of their ports.
#ifndef FABRICPROVIDERS_VRAX_FCNODE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCNODE_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_FCNode_Methods.h"

namespace cimple
{

class VRAX_FCNode_Provider : public Instance_Provider<VRAX_FCNode>
{
  public:
    // The line feed belongs to the message.
    static constexpr Failure_Text kInsertionFailed = "Failed to insert into VRAX_FCNode_map\n";
    // A node that cannot be read is left out.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_smlGetBatch"};

    void build(Map_Writer<VRAX_FCNode>& map);
};

} // namespace cimple

#endif
