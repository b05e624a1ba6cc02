// Error and traffic counters of the local ports.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTSTATISTICS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTSTATISTICS_PROVIDER_H

#include "common/Local_Port_Provider.h"

#include "VRAX_FCPortStatistics_Methods.h"

namespace cimple
{

class VRAX_FCPortStatistics_Provider : public Local_Port_Provider<VRAX_FCPortStatistics>,
                                       public VRAX_FCPortStatistics_Methods<VRAX_FCPortStatistics_Provider>
{
  public:
    static const Attribute<VRAX_FCPortStatistics> kAttributes[23];
    static constexpr const char* kIdPrefix = "VRAX:FCPortStatistics:";
    static constexpr const char* kElementName = "FC Port Statistics";

    // The text speaks of settings; it is what operators know this failure by.
    static constexpr Failure_Text kReadFailed = "Unable to get port settings, portIdx=%s";
    static constexpr Failure_Text kCreationFailed = "Unable to get port statistics, portIdx=%s";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_FCPortStatistics::One or more Key Properties are not Populated, PortIdx=%s";
    static constexpr Failure_Text kInsertionFailed =
        "Failed to insert into VRAX_FCPortStatistics_map, PortIdx=%s, InstanceID=%s";

    static void fill(VRAX_FCPortStatistics& statistics,
                     const Attribute_Reader<VRAX_FCPortStatistics>&,
                     const Datetime& loadTime)
    {
        statistics.StatisticTime.set(loadTime);
    }
};

} // namespace cimple

#endif
