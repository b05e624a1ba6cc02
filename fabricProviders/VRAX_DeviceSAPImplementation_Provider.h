// A port implements the endpoint of its name.
#ifndef FABRICPROVIDERS_VRAX_DEVICESAPIMPLEMENTATION_PROVIDER_H
#define FABRICPROVIDERS_VRAX_DEVICESAPIMPLEMENTATION_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_DeviceSAPImplementation_Methods.h"

namespace cimple
{

class VRAX_DeviceSAPImplementation_Provider
    : public Association_Provider_Base<VRAX_DeviceSAPImplementation_Provider,
                                       VRAX_DeviceSAPImplementation,
                                       VRAX_FCPort_Provider,
                                       VRAX_ProtocolEndpoint_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_DeviceSAPImplementation_Provider";
    static constexpr auto kFirstRole = &VRAX_DeviceSAPImplementation::Antecedent;
    static constexpr auto kSecondRole = &VRAX_DeviceSAPImplementation::Dependent;

    void build(Map_Writer<VRAX_DeviceSAPImplementation>& map);
};

} // namespace cimple

#endif
