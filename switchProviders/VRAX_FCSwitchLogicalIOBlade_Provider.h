// The local switch has its I/O blades.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHLOGICALIOBLADE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHLOGICALIOBLADE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_LogicalIOBlade_Provider.h"

#include "VRAX_FCSwitchLogicalIOBlade_Methods.h"

namespace cimple
{

class VRAX_FCSwitchLogicalIOBlade_Provider
    : public Association_Provider<&VRAX_FCSwitchLogicalIOBlade::GroupComponent,
                                  &VRAX_FCSwitchLogicalIOBlade::PartComponent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_LogicalIOBlade>(); }
};

} // namespace cimple

#endif
