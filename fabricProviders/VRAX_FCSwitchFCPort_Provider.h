// A switch has its own ports.
#ifndef FABRICPROVIDERS_VRAX_FCSWITCHFCPORT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FCSWITCHFCPORT_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"

#include "VRAX_FCSwitchFCPort_Methods.h"

namespace cimple
{

class VRAX_FCSwitchFCPort_Provider
    : public Association_Provider<&VRAX_FCSwitchFCPort::GroupComponent, &VRAX_FCSwitchFCPort::PartComponent>
{
  public:
    void build(Pairs& pairs) { pairs.equal<VRAX_FCSwitch, VRAX_FCPort>(switchName, switchOf<VRAX_FCPort>); }
};

} // namespace cimple

#endif
