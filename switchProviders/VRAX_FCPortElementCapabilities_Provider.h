// The capabilities of a local port.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTELEMENTCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTELEMENTCAPABILITIES_PROVIDER_H

#include "common/local_port_key.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "switchProviders/VRAX_FCPortCapabilities_Provider.h"

#include "VRAX_FCPortElementCapabilities_Methods.h"

namespace cimple
{

class VRAX_FCPortElementCapabilities_Provider
    : public Association_Provider<&VRAX_FCPortElementCapabilities::ManagedElement,
                                  &VRAX_FCPortElementCapabilities::Capabilities>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCPort, VRAX_FCPortCapabilities>(deviceId,
                                                          localPortOf<VRAX_FCPortCapabilities_Provider>);
    }
};

} // namespace cimple

#endif
