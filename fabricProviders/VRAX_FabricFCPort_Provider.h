// The fabric has the node ports that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCPORT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCPORT_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCPort_Methods.h"

namespace cimple
{

class VRAX_FabricFCPort_Provider
    : public Association_Provider<&VRAX_FabricFCPort::GroupComponent, &VRAX_FabricFCPort::PartComponent>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.first<VRAX_Fabric>().withEach<VRAX_FCPort>(belongsToFabric<VRAX_FCPort>);
    }
};

} // namespace cimple

#endif
