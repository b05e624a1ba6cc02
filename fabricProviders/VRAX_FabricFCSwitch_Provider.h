// The fabric consists of its switches.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCSWITCH_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCSWITCH_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCSwitch_Methods.h"

namespace cimple
{

class VRAX_FabricFCSwitch_Provider
    : public Association_Provider<&VRAX_FabricFCSwitch::GroupComponent, &VRAX_FabricFCSwitch::PartComponent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withEach<VRAX_FCSwitch>(); }
};

} // namespace cimple

#endif
