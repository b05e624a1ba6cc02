// Current byte and frame rates of the local ports.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICS_PROVIDER_H

#include "common/Local_Port_Provider.h"

#include "VRAX_FCPortRateStatistics_Methods.h"

namespace cimple
{

class VRAX_FCPortRateStatistics_Provider
    : public Local_Port_Provider<VRAX_FCPortRateStatistics>,
      public VRAX_FCPortRateStatistics_Methods<VRAX_FCPortRateStatistics_Provider>
{
  public:
    static const Attribute<VRAX_FCPortRateStatistics> kAttributes[4];
    static constexpr const char* kIdPrefix = ""; // unlike the counters' InstanceID
    static constexpr const char* kElementName = "FCPort Rate Statistics";
    static constexpr Failure_Text kReadFailed = "Unable to get port rate statistics";

    static void fill(VRAX_FCPortRateStatistics& statistics,
                     const Attribute_Reader<VRAX_FCPortRateStatistics>&,
                     const Datetime& loadTime)
    {
        statistics.StatisticTime.set(loadTime);
        statistics.SampleInterval.set(Datetime{uint64{Datetime::SEC}});
    }
};

} // namespace cimple

#endif
