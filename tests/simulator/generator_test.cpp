// Tests of generated fabrics, up to the largest.
#include "simulator/generator/generate.h"

#include "platform/data_cache.h"
#include "platform/switch_server.h"
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
    {
        EXPECT_EQ(row.message, errorFrom([&] { generateFabric(row.size); }));
    }
}

TEST(Generator, TheSameSeedGivesTheSameFabric)
{
    const std::string once = formatScenario(generateFabric(sizeOf(5, 30, 60, 7)));
    EXPECT_EQ(once, formatScenario(generateFabric(sizeOf(5, 30, 60, 7))));
    EXPECT_NE(once, formatScenario(generateFabric(sizeOf(5, 30, 60, 8))));
    EXPECT_EQ(once, formatScenario(parseScenario(once, "generated")));
}

// Walks the whole fabric and reads a key of everything on the way.
struct Walk
{
    Walk()
    {
        DataCache* cache = DataCache::instance();
        for (std::string index = cache->getFirstRootPortIndex(); !index.empty();
             index = cache->getNextRootPortIndex(index), ++localPorts)
        {
            auto entries = batchOf({"Oper.UserPort.0." + index + ".C64.TotalRxWords",
                                    "Oper.UserPort.0." + index + ".SpeedCapability"});
            answered += getBatch(entries) == 0 && !isErrors(entries.data(), 2) ? 1 : 0;
        }
        const FabricCache* fabric = cache->getFabric(1);
        for (SwitchCache* one = fabric->getFirstSwitch(); one != nullptr; one = fabric->getNextSwitch(one))
        {
            ++switches;
            walkNodes(std::to_string(one->getDomainID()));
        }
    }

    void walkNodes(const std::string& domain)
    {
        char address[kAttachedPortAddressSize];
        for (int next = get_first_attached_port(domain.c_str(), address); next != 0;
             next = get_next_attached_port(domain.c_str(), next, address), ++nodes)
        {
            auto entries = batchOf({"Oper.NameServerAll." + domain + ".Entry." + address + ".PortWwn"});
            answered += getBatch(entries) == 0 && !isErrors(entries.data(), 1) ? 1 : 0;
            wwns.insert(entries[0].value);
        }
    }

    int localPorts = 0, switches = 0, nodes = 0, answered = 0;
    std::set<std::string> wwns;
};

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
        const Walk walk;
        EXPECT_EQ(size.localPorts, walk.localPorts);
        EXPECT_EQ(size.domains, walk.switches);
        EXPECT_EQ(size.nodes, walk.nodes);
        EXPECT_EQ(size.localPorts + size.nodes, walk.answered);
        EXPECT_EQ(static_cast<std::size_t>(size.nodes), walk.wwns.size());
    }
}

} // namespace
