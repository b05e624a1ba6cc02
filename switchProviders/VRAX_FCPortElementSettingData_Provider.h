// The settings of a local port.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTELEMENTSETTINGDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTELEMENTSETTINGDATA_PROVIDER_H

#include "common/element_settings.h"
#include "common/local_port_key.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "switchProviders/VRAX_FCPortSettings_Provider.h"

#include "VRAX_FCPortElementSettingData_Methods.h"

namespace cimple
{

class VRAX_FCPortElementSettingData_Provider
    : public Association_Provider<&VRAX_FCPortElementSettingData::ManagedElement,
                                  &VRAX_FCPortElementSettingData::SettingData>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCPort, VRAX_FCPortSettings>(deviceId, localPortOf<VRAX_FCPortSettings_Provider>);
    }
    static void fill(VRAX_FCPortElementSettingData& pair, const VRAX_FCPort&, const VRAX_FCPortSettings&)
    {
        setInForce(pair);
    }
};

} // namespace cimple

#endif
