// The rates of a local port.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICALDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICALDATA_PROVIDER_H

#include "common/local_port_key.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"

#include "VRAX_FCPortRateStatisticalData_Methods.h"

namespace cimple
{

class VRAX_FCPortRateStatisticalData_Provider
    : public Association_Provider<&VRAX_FCPortRateStatisticalData::ManagedElement,
                                  &VRAX_FCPortRateStatisticalData::Stats>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCPort, VRAX_FCPortRateStatistics>(deviceId,
                                                            localPortOf<VRAX_FCPortRateStatistics_Provider>);
    }
};

} // namespace cimple

#endif
