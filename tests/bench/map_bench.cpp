// Cost of the instance map's operations as it grows, and the memory of a cached instance.
#include "tests/bench/benches.h"

#include "common/Owned.h"
#include "support/Inst_Map.h"
#include "tests/bench/report.h"

#include "VRAX_FCPortStatistics.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace bench
{

using cimple::Inst_Map;
using cimple::Instance;
using cimple::Owned;
using cimple::VRAX_FCPortStatistics;

namespace
{

constexpr std::size_t kSizes[] = {100, 10000, 100000};
constexpr double kNano = 1e9;

Owned<VRAX_FCPortStatistics> portStatistics(std::size_t number)
{
    char id[80];
    std::snprintf(id,
                  sizeof(id),
                  "VRAX:FCPortStatistics:100002a5c0de0001:2%03zx02a5c0de%04zx",
                  number / 65536,
                  number % 65536);
    Owned<VRAX_FCPortStatistics> instance = cimple::makeNull<VRAX_FCPortStatistics>();
    instance->InstanceID.set(id);
    instance->ElementName.set("FC Port Statistics");
    instance->StatisticTime.set(cimple::Datetime::now());
    return instance;
}

std::unique_ptr<Inst_Map> filledMap(std::size_t size)
{
    auto map = std::make_unique<Inst_Map>(&VRAX_FCPortStatistics::static_meta_class);
    for (std::size_t i = 0; i < size; ++i)
        map->_insert(portStatistics(i).release());
    return map;
}

// Every key of the map once, in an order that is not that of insertion.
std::vector<Owned<VRAX_FCPortStatistics>> models(std::size_t size)
{
    constexpr std::size_t kStride = 7919; // a prime that divides none of the sizes
    std::vector<Owned<VRAX_FCPortStatistics>> result;
    for (std::size_t i = 0; i < size; ++i)
        result.push_back(portStatistics(i * kStride % size));
    return result;
}

} // namespace

void benchMaps()
{
    Table insert("Instance map: _insert", "instances", "ns each");
    Table find("Instance map: _find", "instances", "ns each");
    Table get("Instance map: _get_instance (clones)", "instances", "ns each");
    Table memory("Instance map: memory of a cached VRAX_FCPortStatistics", "instances", "bytes each");
    for (const std::size_t size : kSizes)
    {
        const double units = static_cast<double>(size);

        std::vector<Owned<VRAX_FCPortStatistics>> instances;
        std::unique_ptr<Inst_Map> map;
        const double insertSeconds = processorSeconds(
            [&]
            {
                for (Owned<VRAX_FCPortStatistics>& instance : instances)
                    map->_insert(instance.release());
            },
            [&]
            {
                map = std::make_unique<Inst_Map>(&VRAX_FCPortStatistics::static_meta_class);
                instances = models(size);
            });
        insert.row(size, insertSeconds / units * kNano);

        const std::vector<Owned<VRAX_FCPortStatistics>> wanted = models(size);
        std::size_t found = 0;
        const double findSeconds = secondsPerCall(
            [&]
            {
                for (const Owned<VRAX_FCPortStatistics>& model : wanted)
                    found += map->_find(model.get()) < size ? 1U : 0U;
            });
        find.row(size, findSeconds / units * kNano, found % size == 0 ? "" : "NOT ALL FOUND");

        const double getSeconds = secondsPerCall(
            [&]
            {
                for (const Owned<VRAX_FCPortStatistics>& model : wanted)
                {
                    Instance* instance = nullptr;
                    map->_get_instance(model.get(), instance);
                    cimple::unref(instance);
                }
            });
        get.row(size, getSeconds / units * kNano);

        const std::size_t bytes = heapGrowth(
            [&]
            {
                auto kept = std::make_shared<std::unique_ptr<Inst_Map>>(filledMap(size));
                return [kept] { kept->reset(); };
            });
        memory.row(size, static_cast<double>(bytes) / units);
    }
    for (const Table* table : {&insert, &find, &get, &memory})
        table->print();
}

} // namespace bench
