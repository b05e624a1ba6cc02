// The counters of a local port.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTSTATISTICALDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTSTATISTICALDATA_PROVIDER_H

#include "common/local_port_key.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"

#include "VRAX_FCPortStatisticalData_Methods.h"

namespace cimple
{

class VRAX_FCPortStatisticalData_Provider
    : public Association_Provider<&VRAX_FCPortStatisticalData::ManagedElement,
                                  &VRAX_FCPortStatisticalData::Stats>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_FCPort, VRAX_FCPortStatistics>(deviceId,
                                                        localPortOf<VRAX_FCPortStatistics_Provider>);
    }
};

} // namespace cimple

#endif
