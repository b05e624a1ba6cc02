// Cost of the classes of the local ports: their cold load, per port, and the platform calls it makes. The
// ends of associations are fresh when their load begins.
#include "tests/bench/benches.h"

#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "support/VRAX_Maps.h"
#include "switchProviders/VRAX_FCPortElementCapabilities_Provider.h"
#include "switchProviders/VRAX_FCPortElementSettingData_Provider.h"
#include "switchProviders/VRAX_FCPortRateStatisticalData_Provider.h"
#include "switchProviders/VRAX_FCPortStatisticalData_Provider.h"
#include "switchProviders/VRAX_LogicalIOBladeFCPort_Provider.h"
#include "switchProviders/VRAX_MemberOfStatisticsCollection_Provider.h"
#include "tests/bench/cold_load.h"
#include "tests/bench/report.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace bench
{

namespace
{

constexpr double kMicro = 1e6;

// The fabric with the local switch's ports on as many blades as they need.
simulator::Scenario onBlades(simulator::Scenario scenario)
{
    constexpr int kPortsPerBlade = 48;
    for (simulator::SwitchScenario& one : scenario.switches)
    {
        for (simulator::PortScenario& port : one.ports)
            port.blade = one.local ? 1 + port.number / kPortsPerBlade : 0;
        one.blades.resize(one.local ? (one.ports.size() + kPortsPerBlade - 1) / kPortsPerBlade : 0);
    }
    return scenario;
}

template <class PROVIDER, class... END_PROVIDERS>
void benchLoad(const char* className)
{
    Table table(std::string("Cold load: ") + className, "ports", "us per port");
    for (const std::size_t ports : kPortCounts)
    {
        simulator::FabricSize size;
        size.domains = 1;
        size.localPorts = static_cast<int>(ports);
        size.nodes = 0;
        simulator::SimSwitch sim(onBlades(simulator::generateFabric(size)));
        sim.recordKeys(false);

        const auto prepare = []
        {
            (load<END_PROVIDERS>(), ...);
            cimple::VRAX_Maps::getInstance()->InstMapForceUnload(PROVIDER::kIndex);
        };
        (cimple::VRAX_Maps::getInstance()->InstMapForceUnload(END_PROVIDERS::kIndex), ...);
        prepare();
        sim.mark();
        load<PROVIDER>();
        const double calls = static_cast<double>(sim.calls("xpl_smlGetBatch")) / static_cast<double>(ports);
        char remark[64];
        std::snprintf(remark,
                      sizeof(remark),
                      "%.2f batch reads per port, %zu platform calls",
                      calls,
                      sim.platformCalls());
        table.row(
            ports, processorSeconds(load<PROVIDER>, prepare) / static_cast<double>(ports) * kMicro, remark);
    }
    table.print();
}

} // namespace

void benchLoads()
{
    using namespace cimple;
    benchLoad<VRAX_FCPortStatistics_Provider>("VRAX_FCPortStatistics");
    benchLoad<VRAX_FCPortRateStatistics_Provider>("VRAX_FCPortRateStatistics");
    benchLoad<VRAX_FCPortSettings_Provider>("VRAX_FCPortSettings");
    benchLoad<VRAX_FCPortCapabilities_Provider>("VRAX_FCPortCapabilities");
    benchLoad<VRAX_FCPortElementSettingData_Provider, VRAX_FCPort_Provider, VRAX_FCPortSettings_Provider>(
        "VRAX_FCPortElementSettingData");
    benchLoad<VRAX_FCPortElementCapabilities_Provider,
              VRAX_FCPort_Provider,
              VRAX_FCPortCapabilities_Provider>("VRAX_FCPortElementCapabilities");
    benchLoad<VRAX_FCPortStatisticalData_Provider, VRAX_FCPort_Provider, VRAX_FCPortStatistics_Provider>(
        "VRAX_FCPortStatisticalData");
    benchLoad<VRAX_FCPortRateStatisticalData_Provider,
              VRAX_FCPort_Provider,
              VRAX_FCPortRateStatistics_Provider>("VRAX_FCPortRateStatisticalData");
    benchLoad<VRAX_LogicalIOBladeFCPort_Provider, VRAX_LogicalIOBlade_Provider, VRAX_FCPort_Provider>(
        "VRAX_LogicalIOBladeFCPort");
    benchLoad<VRAX_MemberOfStatisticsCollection_Provider,
              VRAX_StatisticsCollection_Provider,
              VRAX_FCPortStatistics_Provider,
              VRAX_FCPortRateStatistics_Provider>("VRAX_MemberOfStatisticsCollection");
}

} // namespace bench
