// How the local switch takes part in its fabric.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHSETTINGS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHSETTINGS_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_FCSwitchSettings_Methods.h"

namespace cimple
{

class VRAX_FCSwitchSettings_Provider : public Local_Switch_Provider<VRAX_FCSwitchSettings>
{
  public:
    static constexpr bool kCreatesFirst = true;
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchsettings::One or more Key Properties are not Populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    static void fill(VRAX_FCSwitchSettings& settings, const char* localWwn);

    // Changes the switch's configuration to what the model carries, in one write; a value that is refused
    // leaves the switch and the cached instance as they were. 102 for a priority that there is not, 104 for
    // all else.
    Modify_Instance_Status modify_instance(const VRAX_FCSwitchSettings* model,
                                           const VRAX_FCSwitchSettings* instance);
};

} // namespace cimple

#endif
