// A port implements the endpoint of its name.
#ifndef FABRICPROVIDERS_VRAX_DEVICESAPIMPLEMENTATION_PROVIDER_H
#define FABRICPROVIDERS_VRAX_DEVICESAPIMPLEMENTATION_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/topology_keys.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_DeviceSAPImplementation_Methods.h"

namespace cimple
{

class VRAX_DeviceSAPImplementation_Provider
    : public Association_Provider<&VRAX_DeviceSAPImplementation::Antecedent,
                                  &VRAX_DeviceSAPImplementation::Dependent>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCPort, VRAX_ProtocolEndpoint>(portSystemAndWwn, endpointSystemAndWwn);
    }
};

} // namespace cimple

#endif
