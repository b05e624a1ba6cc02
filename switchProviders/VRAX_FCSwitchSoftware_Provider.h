// The local switch has its firmware images.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHSOFTWARE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHSOFTWARE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_SoftwareIdentity_Provider.h"

#include "VRAX_FCSwitchSoftware_Methods.h"

namespace cimple
{

class VRAX_FCSwitchSoftware_Provider
    : public Association_Provider<&VRAX_FCSwitchSoftware::System, &VRAX_FCSwitchSoftware::InstalledSoftware>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_SoftwareIdentity>(); }
};

} // namespace cimple

#endif
