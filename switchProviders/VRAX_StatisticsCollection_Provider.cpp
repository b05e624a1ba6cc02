// The collection of the local switch's statistics.
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"

#include "switchaccess/time_translation.h"

#include <ctime>

namespace cimple
{

void VRAX_StatisticsCollection_Provider::fill(VRAX_StatisticsCollection& instance, const char* localWwn)
{
    instance.InstanceID.set(localWwn);
    instance.ElementName.set("FC Switch Statistics Collection");
    instance.TimeLastSampled.set(Datetime(localWallClock(std::time(nullptr)).c_str()));
    instance.SampleInterval.set(Datetime{uint64{Datetime::SEC}});
}

} // namespace cimple
