// Cost of reading the switch: the cold load of the port statistics, per port, and the platform calls it
// makes.
#include "tests/bench/benches.h"

#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "support/VRAX_Maps.h"
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"
#include "tests/bench/report.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace bench
{

namespace
{

constexpr double kMicro = 1e6;

template <class PROVIDER>
void benchLoad(const char* title)
{
    Table table(title, "ports", "us per port");
    for (const std::size_t ports : kPortCounts)
    {
        simulator::FabricSize size;
        size.domains = 1;
        size.localPorts = static_cast<int>(ports);
        size.nodes = 0;
        simulator::SimSwitch sim(simulator::generateFabric(size));
        sim.recordKeys(false);

        PROVIDER provider;
        const auto stale = [] { cimple::VRAX_Maps::getInstance()->InstMapForceUnload(PROVIDER::kIndex); };
        const auto load = [&]
        {
            if (provider.load() != cimple::LOAD_OK)
                throw std::runtime_error("the load failed");
        };
        stale();
        sim.mark();
        load();
        const double calls = static_cast<double>(sim.calls("xpl_smlGetBatch")) / static_cast<double>(ports);
        char remark[64];
        std::snprintf(remark,
                      sizeof(remark),
                      "%.2f batch reads per port, %zu platform calls",
                      calls,
                      sim.platformCalls());
        table.row(ports, processorSeconds(load, stale) / static_cast<double>(ports) * kMicro, remark);
    }
    table.print();
}

} // namespace

void benchLoads()
{
    benchLoad<cimple::VRAX_FCPortStatistics_Provider>("Cold load: VRAX_FCPortStatistics");
    benchLoad<cimple::VRAX_FCPortRateStatistics_Provider>("Cold load: VRAX_FCPortRateStatistics");
}

} // namespace bench
