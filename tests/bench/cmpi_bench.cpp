// Cost of a warm enumeration through CMPI: the loaded module behind the agent's broker, without HTTP and XML.
#include "tests/bench/benches.h"

#include "agent/service/AgentCore.h"
#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/bench/report.h"

#include <string>

namespace bench
{

namespace
{

constexpr double kMicro = 1e6;
constexpr char kNameSpace[] = "root/interop";

class Counter : public cimd::Sink<cimd::Instance>
{
  public:
    void put(const cimd::Instance& instance) override
    {
        last = instance;
        ++count;
    }

    std::size_t count = 0;
    cimd::Instance last;
};

} // namespace

void benchCmpi(const std::string& buildDir)
{
    Table enumeration("Warm enumeration through CMPI: VRAX_FCPortStatistics", "ports", "us each");
    Table get("GetInstance through CMPI: VRAX_FCPortStatistics", "ports", "us each");
    for (const std::size_t ports : kPortCounts)
    {
        simulator::FabricSize size;
        size.domains = 1;
        size.localPorts = static_cast<int>(ports);
        size.nodes = 0;
        const simulator::SimSwitch sim(simulator::generateFabric(size));
        // Its end unloads the providers, so that each size starts with empty maps.
        cimd::AgentCore agent(buildDir + "/share/cimd/repository.xml",
                              buildDir + "/share/cimd/providers.reg",
                              buildDir + "/lib/cimd");
        const cimd::RequestContext client;

        cimd::EnumerateInstancesRequest all;
        all.nameSpace = kNameSpace;
        all.className = cimd::CimName("VRAX_FCPortStatistics");
        Counter counter;
        const auto enumerate = [&]
        {
            counter.count = 0;
            agent.service().enumerateInstances(client, all, counter);
        };
        const double units = static_cast<double>(ports);
        const double seconds = secondsPerCall(enumerate);
        enumeration.row(ports, seconds / units * kMicro, counter.count == ports ? "" : "INCOMPLETE");

        cimd::GetInstanceRequest one;
        one.nameSpace = kNameSpace;
        one.path = counter.last.path();
        get.row(ports, secondsPerCall([&] { agent.service().getInstance(client, one); }) * kMicro);
    }
    enumeration.print();
    get.print();
}

} // namespace bench
