// The local switch is packaged in the cards of its I/O blades too.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHPHYSICALIOBLADE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHPHYSICALIOBLADE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_PhysicalIOBlade_Provider.h"

#include "VRAX_FCSwitchPhysicalIOBlade_Methods.h"

namespace cimple
{

class VRAX_FCSwitchPhysicalIOBlade_Provider
    : public Association_Provider<&VRAX_FCSwitchPhysicalIOBlade::Antecedent,
                                  &VRAX_FCSwitchPhysicalIOBlade::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_PhysicalIOBlade>(); }
};

} // namespace cimple

#endif
