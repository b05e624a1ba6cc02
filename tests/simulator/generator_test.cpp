// Tests of generated fabrics, up to the largest.
#include "simulator/generator/generate.h"

#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <set>

using namespace simulator;

namespace
{

FabricSize sizeOf(int domains, int localPorts, int nodes, int seed = 1)
{
    FabricSize size;
    size.domains = domains;
    size.localPorts = localPorts;
    size.nodes = nodes;
    size.seed = seed;
    return size;
}

TEST(Generator, SizesOutsideTheLimitsAreRefusedByName)
{
    struct
    {
        FabricSize size;
        const char* message;
    } const rows[] = {
        {sizeOf(0, 24, 0), "generator: domains: expected 1 to 239, got 0"},
        {sizeOf(240, 24, 0), "generator: domains: expected 1 to 239, got 240"},
        {sizeOf(1, 0, 0), "generator: localPorts: expected 1 to 1536, got 0"},
        {sizeOf(1, 1537, 0), "generator: localPorts: expected 1 to 1536, got 1537"},
        {sizeOf(1, 24, 20001), "generator: nodes: expected 0 to 20000, got 20001"},
        {sizeOf(1, 24, -1), "generator: nodes: expected 0 to 20000, got -1"},
        {sizeOf(1, 24, 0, -1), "generator: seed: expected 0 to 1000000000, got -1"},
        {sizeOf(3, 1, 0), "generator: localPorts: this fabric needs at least 2, got 1"},
        {sizeOf(3, 2, 1), "generator: localPorts: this fabric needs at least 3, got 2"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.message, errorFrom([&] { generateFabric(row.size); }));
}

TEST(Generator, TheSameSeedGivesTheSameFabric)
{
    const std::string once = formatScenario(generateFabric(sizeOf(5, 30, 60, 7)));
    EXPECT_EQ(once, formatScenario(generateFabric(sizeOf(5, 30, 60, 7))));
    EXPECT_NE(once, formatScenario(generateFabric(sizeOf(5, 30, 60, 8))));
    EXPECT_EQ(once, formatScenario(parseScenario(once, "generated")));
}

bool isAnswered(const std::vector<std::string>& keys)
{
    auto entries = batchOf(keys);
    return getBatch(entries) == 0 && !isErrors(entries.data(), static_cast<std::uint32_t>(keys.size()));
}

TEST(Generator, TheLargestFabricsAnswerThroughout)
{
    for (const FabricSize& size : {sizeOf(239, 1536, 20000),
                                   sizeOf(1, 1536, 20000),
                                   sizeOf(1, 1, 20000),
                                   sizeOf(2, 2, 3),
                                   sizeOf(1, 1, 0)})
    {
        SimSwitch sim(generateFabric(size));
        sim.recordKeys(false);
        EXPECT_EQ(static_cast<std::size_t>(size.localPorts), portWalk().size());
        for (const std::string& index : portWalk())
        {
            const std::string port = "Oper.UserPort.0." + index;
            EXPECT_TRUE(isAnswered({port + ".C64.TotalRxWords", port + ".SpeedCapability"})) << port;
        }
        EXPECT_EQ(static_cast<std::size_t>(size.domains), switchWalk().size());
        std::set<std::string> wwns;
        for (SwitchCache* one : switchWalk())
        {
            const std::string domain = std::to_string(one->getDomainID());
            for (const std::string& address : attachedTo(domain))
                wwns.insert(valueOf("Oper.NameServerAll." + domain + ".Entry." + address + ".PortWwn"));
        }
        EXPECT_EQ(static_cast<std::size_t>(size.nodes), wwns.size());
        EXPECT_EQ(0u, wwns.count("status 2"));
    }
}

} // namespace
