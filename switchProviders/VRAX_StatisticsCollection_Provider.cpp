// The collection of the local switch's statistics.
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"

#include <ctime>

namespace cimple
{

namespace
{

// Local wall-clock time with a zero offset: clients compare it with the switch's own display of time.
Datetime localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    char text[Datetime::BUFFER_SIZE];
    std::strftime(text, sizeof(text), "%Y%m%d%H%M%S.000000+000", &fields);
    return Datetime(text);
}

} // namespace

void VRAX_StatisticsCollection_Provider::fill(VRAX_StatisticsCollection& instance, const char* localWwn)
{
    instance.InstanceID.set(localWwn);
    instance.ElementName.set("FC Switch Statistics Collection");
    instance.TimeLastSampled.set(localTime());
    instance.SampleInterval.set(Datetime{uint64{Datetime::SEC}});
}

} // namespace cimple
