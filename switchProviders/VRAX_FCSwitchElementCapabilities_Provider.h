// The capabilities of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHELEMENTCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHELEMENTCAPABILITIES_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_FCSwitchCapabilities_Provider.h"

#include "VRAX_FCSwitchElementCapabilities_Methods.h"

namespace cimple
{

class VRAX_FCSwitchElementCapabilities_Provider
    : public Association_Provider<&VRAX_FCSwitchElementCapabilities::ManagedElement,
                                  &VRAX_FCSwitchElementCapabilities::Capabilities>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_FCSwitchCapabilities>(); }
};

} // namespace cimple

#endif
