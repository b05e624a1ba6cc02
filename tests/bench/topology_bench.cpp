// Cost of loading the fabric's ports, endpoints and nodes, and of pairing them, as the fabric grows.
#include "tests/bench/benches.h"

#include "fabricProviders/VRAX_ActiveConnection_Provider.h"
#include "fabricProviders/VRAX_DeviceSAPImplementation_Provider.h"
#include "fabricProviders/VRAX_FCSwitchFCPort_Provider.h"
#include "fabricProviders/VRAX_FCSwitchProtocolEndPoint_Provider.h"
#include "fabricProviders/VRAX_FabricFCNode_Provider.h"
#include "fabricProviders/VRAX_FabricFCPort_Provider.h"
#include "fabricProviders/VRAX_FabricProtocolEndPoint_Provider.h"
#include "fabricProviders/VRAX_MemberOfFCNode_Provider.h"
#include "fabricProviders/VRAX_MemberOfLogicalNetwork_Provider.h"
#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/bench/cold_load.h"
#include "tests/bench/report.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench
{

namespace
{

constexpr int kNodeCounts[] = {1000, 5000, 20000};
constexpr int kDomains = 20;
constexpr int kLocalPorts = 64;
constexpr double kMicro = 1e6;
constexpr std::size_t kOtherWorkBytes = 64u << 20;
constexpr std::size_t kCacheLineBytes = 64;

// A class whose load is measured by itself: its ends are fresh when it begins.
struct Subject
{
    const char* name;
    cimple::providerEnum_t map;
    void (*load)();
    void (*loadEnds)();
    std::size_t (*size)();
};

template <class PROVIDER, class... END_PROVIDERS>
constexpr Subject subject(const char* name)
{
    return {name,
            PROVIDER::kIndex,
            &load<PROVIDER>,
            [] { (load<END_PROVIDERS>(), ...); },
            [] { return cimple::Read_Guard<typename PROVIDER::Class>().view().size(); }};
}

using namespace cimple;

constexpr Subject kSubjects[] = {
    subject<VRAX_FCPort_Provider>("VRAX_FCPort"),
    subject<VRAX_ProtocolEndpoint_Provider>("VRAX_ProtocolEndpoint"),
    subject<VRAX_FCNode_Provider>("VRAX_FCNode"),
    subject<VRAX_FabricFCPort_Provider, VRAX_Fabric_Provider, VRAX_FCPort_Provider>("VRAX_FabricFCPort"),
    subject<VRAX_FabricFCNode_Provider, VRAX_Fabric_Provider, VRAX_FCNode_Provider>("VRAX_FabricFCNode"),
    subject<VRAX_FabricProtocolEndPoint_Provider, VRAX_Fabric_Provider, VRAX_ProtocolEndpoint_Provider>(
        "VRAX_FabricProtocolEndPoint"),
    subject<VRAX_FCSwitchFCPort_Provider, VRAX_FCSwitch_Provider, VRAX_FCPort_Provider>(
        "VRAX_FCSwitchFCPort"),
    subject<VRAX_FCSwitchProtocolEndPoint_Provider, VRAX_FCSwitch_Provider, VRAX_ProtocolEndpoint_Provider>(
        "VRAX_FCSwitchProtocolEndPoint"),
    subject<VRAX_DeviceSAPImplementation_Provider, VRAX_FCPort_Provider, VRAX_ProtocolEndpoint_Provider>(
        "VRAX_DeviceSAPImplementation"),
    subject<VRAX_MemberOfFCNode_Provider, VRAX_FCNode_Provider, VRAX_FCPort_Provider>("VRAX_MemberOfFCNode"),
    subject<VRAX_MemberOfLogicalNetwork_Provider,
            VRAX_LogicalNetwork_Provider,
            VRAX_ProtocolEndpoint_Provider>("VRAX_MemberOfLogicalNetwork"),
    subject<VRAX_ActiveConnection_Provider, VRAX_ProtocolEndpoint_Provider>("VRAX_ActiveConnection"),
};

// Loads are at least a freshness period apart, and the processor has done other work in between: without this
// a small fabric, loaded again and again, would be measured in the processor's caches and a large one in
// memory.
void fillCaches()
{
    static std::vector<unsigned char> other(kOtherWorkBytes);
    for (std::size_t i = 0; i < other.size(); i += kCacheLineBytes)
        ++other[i];
}

// Seconds per instance, and how many there are.
double measure(const Subject& one, std::size_t& instances)
{
    const auto prepare = [&one]
    {
        one.loadEnds();
        VRAX_Maps::getInstance()->InstMapForceUnload(one.map);
        fillCaches();
    };
    const double seconds = processorSeconds(one.load, prepare);
    instances = one.size();
    return seconds / static_cast<double>(instances);
}

} // namespace

void benchTopology()
{
    std::vector<Table> tables;
    for (const Subject& one : kSubjects)
        tables.emplace_back(std::string("Cold load: ") + one.name, "nodes", "us per instance");
    std::vector<double> smallest;
    for (const int nodes : kNodeCounts)
    {
        simulator::FabricSize size;
        size.domains = kDomains;
        size.localPorts = kLocalPorts;
        size.nodes = nodes;
        simulator::SimSwitch sim(simulator::generateFabric(size));
        sim.recordKeys(false);
        for (const Subject& one : kSubjects)
            VRAX_Maps::getInstance()->InstMapForceUnload(one.map);
        for (std::size_t i = 0; i < tables.size(); ++i)
        {
            std::size_t instances = 0;
            const double each = measure(kSubjects[i], instances);
            if (smallest.size() < tables.size())
                smallest.push_back(each);
            char remark[64];
            std::snprintf(
                remark, sizeof(remark), "%zu instances, %.2f of the smallest", instances, each / smallest[i]);
            tables[i].row(static_cast<std::size_t>(nodes), each * kMicro, remark);
        }
    }
    for (const Table& table : tables)
        table.print();
}

} // namespace bench
