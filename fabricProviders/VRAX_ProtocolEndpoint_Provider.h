// The Fibre Channel endpoints of online switch ports and of attached node ports.
#ifndef FABRICPROVIDERS_VRAX_PROTOCOLENDPOINT_PROVIDER_H
#define FABRICPROVIDERS_VRAX_PROTOCOLENDPOINT_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_ProtocolEndpoint_Methods.h"

namespace cimple
{

class VRAX_ProtocolEndpoint_Provider : public Instance_Provider<VRAX_ProtocolEndpoint>,
                                       public VRAX_ProtocolEndpoint_Methods<VRAX_ProtocolEndpoint_Provider>
{
  public:
    void build(Map_Writer<VRAX_ProtocolEndpoint>& map);

  private:
    class Endpoint_Writer;
};

} // namespace cimple

#endif
