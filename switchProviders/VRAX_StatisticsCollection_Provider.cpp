// The collection of the local switch's statistics.
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"

#include "common/local_switch.h"

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

void VRAX_StatisticsCollection_Provider::build(Map_Writer<VRAX_StatisticsCollection>& map)
{
    const Local_Switch_Wwn wwn(kSource);
    const Datetime loadTime = localTime();
    Owned<VRAX_StatisticsCollection> instance = makeNull<VRAX_StatisticsCollection>();
    if (!instance)
        failLoad("Failed to create instance VRAX_StatisticsCollection");

    instance->InstanceID.set(wwn.text());
    instance->ElementName.set("FC Switch Statistics Collection");
    instance->TimeLastSampled.set(loadTime);
    instance->SampleInterval.set(Datetime{uint64{Datetime::SEC}});

    insertChecked(map,
                  instance,
                  "VRAX_statisticsCollection::One or more Key Properties are not Populated",
                  "Failed to insert instance in map");
}

} // namespace cimple
