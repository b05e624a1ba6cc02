// The fabric consists of its switches.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCSWITCH_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCSWITCH_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCSwitch_Methods.h"

namespace cimple
{

class VRAX_FabricFCSwitch_Provider : public Association_Provider_Base<VRAX_FabricFCSwitch_Provider,
                                                                      VRAX_FabricFCSwitch,
                                                                      VRAX_Fabric_Provider,
                                                                      VRAX_FCSwitch_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FabricFCSwitch_Provider";
    static constexpr auto kFirstRole = &VRAX_FabricFCSwitch::GroupComponent;
    static constexpr auto kSecondRole = &VRAX_FabricFCSwitch::PartComponent;

    void build(Map_Writer<VRAX_FabricFCSwitch>& map);
};

} // namespace cimple

#endif
