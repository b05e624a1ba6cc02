// The fabric has the node ports that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICFCPORT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICFCPORT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"

#include "VRAX_FabricFCPort_Methods.h"

namespace cimple
{

class VRAX_FabricFCPort_Provider : public Association_Provider_Base<VRAX_FabricFCPort_Provider,
                                                                    VRAX_FabricFCPort,
                                                                    VRAX_Fabric_Provider,
                                                                    VRAX_FCPort_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FabricFCPort_Provider";
    static constexpr auto kFirstRole = &VRAX_FabricFCPort::GroupComponent;
    static constexpr auto kSecondRole = &VRAX_FabricFCPort::PartComponent;

    void build(Map_Writer<VRAX_FabricFCPort>& map);
};

} // namespace cimple

#endif
