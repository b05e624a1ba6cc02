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
    // Of two ports that claim one WWN the first has the endpoint.
    static constexpr Failure_Text kInsertionFailed = Failure_Text::none();
    // While the fabric has no principal switch it has no name either, and its node ports' SystemName is
    // empty.
    static constexpr bool kChecksKeys = false;
    // A port whose state cannot be read has no endpoint.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_smlGetBatch"};

    void build(Map_Writer<VRAX_ProtocolEndpoint>& map);

  private:
    class Endpoint_Writer;
};

} // namespace cimple

#endif
