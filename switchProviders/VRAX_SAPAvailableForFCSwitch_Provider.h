// The local switch is managed by its management services.
#ifndef SWITCHPROVIDERS_VRAX_SAPAVAILABLEFORFCSWITCH_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_SAPAVAILABLEFORFCSWITCH_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_RemoteServiceAccessPoint_Provider.h"

#include "VRAX_SAPAvailableForFCSwitch_Methods.h"

namespace cimple
{

class VRAX_SAPAvailableForFCSwitch_Provider
    : public Association_Provider<&VRAX_SAPAvailableForFCSwitch::AvailableSAP,
                                  &VRAX_SAPAvailableForFCSwitch::ManagedElement>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_RemoteServiceAccessPoint>(); }
};

} // namespace cimple

#endif
