// The settings of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHELEMENTSETTINGDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHELEMENTSETTINGDATA_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/element_settings.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_FCSwitchSettings_Provider.h"

#include "VRAX_FCSwitchElementSettingData_Methods.h"

namespace cimple
{

class VRAX_FCSwitchElementSettingData_Provider
    : public Association_Provider<&VRAX_FCSwitchElementSettingData::ManagedElement,
                                  &VRAX_FCSwitchElementSettingData::SettingData>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_FCSwitchSettings>(); }
    static void
    fill(VRAX_FCSwitchElementSettingData& pair, const VRAX_FCSwitch&, const VRAX_FCSwitchSettings&)
    {
        setInForce(pair);
    }
};

} // namespace cimple

#endif
