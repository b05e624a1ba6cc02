// What the local ports are configured to be.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTSETTINGS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTSETTINGS_PROVIDER_H

#include "common/Local_Port_Provider.h"
#include "switchaccess/port_hardware.h"

#include "VRAX_FCPortSettings_Methods.h"

namespace cimple
{

class VRAX_FCPortSettings_Provider : public Local_Port_Provider<VRAX_FCPortSettings>
{
  public:
    static const Attribute<VRAX_FCPortSettings> kAttributes[9];
    static constexpr const char* kIdPrefix = "VRAX:FCPortSettings:";
    static constexpr const char* kElementName = "FC Port Settings";
    static constexpr bool kNamesFirst = true;
    static constexpr Failure_Text kReadFailed = "Unable to get port settings";
    static constexpr Failure_Text kUnnamed = "calcPortWwn failed";

    static const char* keyArgument(const Loaded_Port& port)
    {
        return speedCapabilityKey(port.cache, port.index);
    }
    static void fill(VRAX_FCPortSettings& settings,
                     const Attribute_Reader<VRAX_FCPortSettings>& attributes,
                     const Datetime& loadTime);

    // Changes the port's configuration to what the model carries; a value that the switch refuses leaves the
    // cached instance as it was. 100 for a port that is not there, 104 when the switch refuses.
    Modify_Instance_Status modify_instance(const VRAX_FCPortSettings* model,
                                           const VRAX_FCPortSettings* instance);

    // Takes apart an InstanceID; false, and nothing is changed, when it is none.
    static bool parseInstanceID(const String& id, String& switchWwn, String& portWwn);
};

} // namespace cimple

#endif
