// The local switch and the images of its configuration.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHCONFIGURATIONDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHCONFIGURATIONDATA_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_ConfigurationData_Provider.h"

#include "VRAX_FCSwitchConfigurationData_Methods.h"

namespace cimple
{

// The images have no map, so they are made anew for each load; only the switch's is loaded before.
class VRAX_FCSwitchConfigurationData_Provider
    : public Association_Provider<&VRAX_FCSwitchConfigurationData::ManagedElement,
                                  &VRAX_FCSwitchConfigurationData::SettingData,
                                  Ends<VRAX_FCSwitch>>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed =
        "Failed to create VRAX_FCSwitchConfigurationData instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCSwitchconfigurationData::One or more Key Properties are not Populated";

    void build(Pairs& pairs)
    {
        const VRAX_FCSwitch* local = pairs.local<VRAX_FCSwitch>().get();
        if (local == nullptr)
            return;
        pairs.join(*local, *VRAX_ConfigurationData_Provider::formatConfigurationDataInstance("DEFAULT"));
        if (const Owned<VRAX_ConfigurationData> waiting =
                VRAX_ConfigurationData_Provider::formatNewInstance())
            pairs.join(*local, *waiting);
    }
};

} // namespace cimple

#endif
