// What the local ports can be configured to be.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTCAPABILITIES_PROVIDER_H

#include "common/Local_Port_Provider.h"
#include "switchaccess/port_hardware.h"

#include "VRAX_FCPortCapabilities_Methods.h"

namespace cimple
{

class VRAX_FCPortCapabilities_Provider
    : public Local_Port_Provider<VRAX_FCPortCapabilities>,
      public VRAX_FCPortCapabilities_Methods<VRAX_FCPortCapabilities_Provider>
{
  public:
    static const Attribute<VRAX_FCPortCapabilities> kAttributes[1];
    static constexpr const char* kIdPrefix = "VRAX:FCPortCapabilities:";
    static constexpr const char* kElementName = "FC Port Capabilities";
    static constexpr Failure_Text kUnnamed = "calcPortWwn failed";

    static const char* keyArgument(const Loaded_Port& port)
    {
        return speedCapabilityKey(port.cache, port.index);
    }
    static void fill(VRAX_FCPortCapabilities& capabilities,
                     const Attribute_Reader<VRAX_FCPortCapabilities>& attributes,
                     const Datetime& loadTime);
};

} // namespace cimple

#endif
