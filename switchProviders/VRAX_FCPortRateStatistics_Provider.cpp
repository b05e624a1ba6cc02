// Current byte and frame rates of the local ports.
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"

#include "common/CacheLock.h"
#include "common/Sml_Batch.h"
#include "common/fabric_walk.h"

namespace cimple
{

namespace
{

// A rate of a port: the attribute, a decimal text in bytes or frames per second, and the property it feeds.
struct Rate
{
    const char* key;
    Property<uint64> VRAX_FCPortRateStatistics::*property;
};

constexpr Rate kRates[] = {
    {"Oper.UserPort.0.%s.RxBytePerf", &VRAX_FCPortRateStatistics::RxRate},
    {"Oper.UserPort.0.%s.TxBytePerf", &VRAX_FCPortRateStatistics::TxRate},
    {"Oper.UserPort.0.%s.RxFramePerf", &VRAX_FCPortRateStatistics::RxFrameRate},
    {"Oper.UserPort.0.%s.TxFramePerf", &VRAX_FCPortRateStatistics::TxFrameRate},
};

void fill(VRAX_FCPortRateStatistics& statistics, const Sml_Batch& batch)
{
    for (std::size_t i = 0; i < batch.size(); ++i)
    {
        // A rate that the port does not measure at present stays null.
        if (batch.status(i) == 0)
            (statistics.*kRates[i].property).set(batch.decimal(i));
    }
}

} // namespace

void VRAX_FCPortRateStatistics_Provider::build(Map_Writer<VRAX_FCPortRateStatistics>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    const DataCache& cache = *DataCache::instance();
    const Wwn rootWwn = cache.getRootSwitchWwn();
    const Datetime loadTime = Datetime::now();
    const Datetime sampleInterval{uint64{Datetime::SEC}};
    Sml_Batch batch(kRates);

    for (const std::string& port : Root_Ports(cache))
    {
        if (!batch.read({port.c_str()}))
            failLoad("Unable to get port rate statistics");
        Owned<VRAX_FCPortRateStatistics> instance = makeNull<VRAX_FCPortRateStatistics>();
        if (!instance)
            failLoad("Unable to create instance of VRAX_FCPortRateStatistics");
        const Wwn portWwn = cache.calcPortWwn(rootWwn, port);
        if (portWwn.empty())
            break;

        // Unlike the counters' InstanceID this one has no prefix.
        const std::string id = rootWwn.toString() + ":" + portWwn.toString();
        instance->InstanceID.set(id.c_str());
        instance->ElementName.set("FCPort Rate Statistics");
        instance->StatisticTime.set(loadTime);
        instance->SampleInterval.set(sampleInterval);
        fill(*instance, batch);

        insertChecked(map, instance);
    }
}

} // namespace cimple
