// The local switch hosts its management services.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHACCESSPOINT_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHACCESSPOINT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_RemoteServiceAccessPoint_Provider.h"

#include "VRAX_FCSwitchAccessPoint_Methods.h"

namespace cimple
{

class VRAX_FCSwitchAccessPoint_Provider
    : public Association_Provider<&VRAX_FCSwitchAccessPoint::Antecedent, &VRAX_FCSwitchAccessPoint::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_RemoteServiceAccessPoint>(); }
};

} // namespace cimple

#endif
