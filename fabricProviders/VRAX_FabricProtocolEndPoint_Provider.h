// The fabric has the endpoints of the node ports that are attached to it.
#ifndef FABRICPROVIDERS_VRAX_FABRICPROTOCOLENDPOINT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRICPROTOCOLENDPOINT_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "VRAX_FabricProtocolEndPoint_Methods.h"

namespace cimple
{

class VRAX_FabricProtocolEndPoint_Provider
    : public Association_Provider_Base<VRAX_FabricProtocolEndPoint_Provider,
                                       VRAX_FabricProtocolEndPoint,
                                       VRAX_Fabric_Provider,
                                       VRAX_ProtocolEndpoint_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_FabricProtocolEndPoint_Provider";
    static constexpr auto kFirstRole = &VRAX_FabricProtocolEndPoint::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FabricProtocolEndPoint::Dependent;

    void build(Map_Writer<VRAX_FabricProtocolEndPoint>& map);
};

} // namespace cimple

#endif
