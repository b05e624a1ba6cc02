// Cost of a warm request for the associations of one object, as the fabric grows, and the memory of a pair.
#include "tests/bench/benches.h"

#include "agent/service/AgentCore.h"
#include "common/Owned.h"
#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "support/Inst_Map.h"
#include "tests/bench/report.h"

#include "VRAX_FCNode.h"
#include "VRAX_FCPort.h"
#include "VRAX_MemberOfFCNode.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace bench
{

namespace
{

constexpr std::size_t kNodeCounts[] = {1000, 5000, 20000};
constexpr int kDomains = 20;
constexpr int kLocalPorts = 64;
constexpr double kMicro = 1e6;
constexpr char kNameSpace[] = "root/interop";

template <class VALUE>
class Counter : public cimd::Sink<VALUE>
{
  public:
    void put(const VALUE& value) override
    {
        last = value;
        ++count;
    }

    std::size_t count = 0;
    VALUE last;
};

// A figure at growing sizes, beside the smallest.
class Growth
{
  public:
    explicit Growth(const char* title) : _table(title, "nodes", "us per request") {}

    void row(std::size_t nodes, double seconds, std::size_t results)
    {
        if (_smallest == 0)
            _smallest = seconds;
        char remark[64];
        std::snprintf(
            remark, sizeof(remark), "%zu results, %.2f of the smallest", results, seconds / _smallest);
        _table.row(nodes, seconds * kMicro, remark);
    }
    void print() const { _table.print(); }

  private:
    Table _table;
    double _smallest = 0;
};

// Pairs of one node and many ports, then of a node for each port. The ends are counted apart: they are the
// maps' of their own classes.
void benchPairs()
{
    using namespace cimple;
    Table table("Memory of a VRAX_MemberOfFCNode in its map, ends shared", "pairs", "bytes each");
    for (const bool oneNode : {true, false})
    {
        for (const std::size_t size : kNodeCounts)
        {
            std::vector<Owned<VRAX_FCNode>> nodes;
            std::vector<Owned<VRAX_FCPort>> ports;
            for (std::size_t i = 0; i < size; ++i)
            {
                const std::string name = std::to_string(i);
                nodes.push_back(makeWithDefaults<VRAX_FCNode>());
                nodes.back()->InstanceID.set(name.c_str());
                ports.push_back(makeWithDefaults<VRAX_FCPort>());
                ports.back()->DeviceID.set(name.c_str());
            }
            const std::size_t bytes = heapGrowth(
                [&]
                {
                    auto map = std::make_shared<Inst_Map>(&VRAX_MemberOfFCNode::static_meta_class);
                    for (std::size_t i = 0; i < size; ++i)
                    {
                        Owned<VRAX_MemberOfFCNode> pair = makeWithDefaults<VRAX_MemberOfFCNode>();
                        Instance* const node = nodes[oneNode ? 0 : i].get();
                        ref(node);
                        ref(ports[i].get());
                        pair->Collection = cast<decltype(pair->Collection)>(node);
                        pair->Member = cast<decltype(pair->Member)>(ports[i].get());
                        map->_insert(pair.release());
                    }
                    return [map] { map->clear(); };
                });
            table.row(size,
                      static_cast<double>(bytes) / static_cast<double>(size),
                      oneNode ? "one node in all" : "a node for each");
        }
    }
    table.print();
}

} // namespace

void benchAssociations(const std::string& buildDir)
{
    Growth names("AssociatorNames of a VRAX_FCPort over VRAX_MemberOfFCNode");
    Growth all("AssociatorNames of a VRAX_FCPort over all associations");
    Growth associators("Associators of a VRAX_FCPort over VRAX_MemberOfFCNode");
    Growth references("References of a VRAX_FCPort in VRAX_MemberOfFCNode");
    Growth role("ReferenceNames of a VRAX_FCPort in the role Member");
    for (const std::size_t nodes : kNodeCounts)
    {
        simulator::FabricSize size;
        size.domains = kDomains;
        size.localPorts = kLocalPorts;
        size.nodes = static_cast<int>(nodes);
        const simulator::SimSwitch sim(simulator::generateFabric(size));
        cimd::AgentCore agent(buildDir + "/share/cimd/repository.xml",
                              buildDir + "/share/cimd/providers.reg",
                              buildDir + "/lib/cimd");
        const cimd::RequestContext client;

        cimd::EnumerateInstanceNamesRequest everyPair;
        everyPair.nameSpace = kNameSpace;
        everyPair.className = cimd::CimName("VRAX_MemberOfFCNode");
        Counter<cimd::ObjectPath> paths;
        Counter<cimd::Instance> instances;
        agent.service().enumerateInstanceNames(client, everyPair, paths);
        const cimd::ObjectPath port = paths.last.findKey(cimd::CimName("Member"))->asReference();

        // Warm: every association's map has been loaded before it is measured.
        const auto measure = [&](Growth& growth, auto& counter, const auto& ask)
        {
            ask();
            counter.count = 0;
            ask();
            const std::size_t results = counter.count;
            growth.row(nodes, secondsPerCall(ask), results);
        };

        cimd::AssociatorNamesRequest anywhere;
        anywhere.nameSpace = kNameSpace;
        anywhere.path = port;
        cimd::AssociatorNamesRequest overOne = anywhere;
        overOne.assocClass = cimd::CimName("VRAX_MemberOfFCNode");
        cimd::AssociatorsRequest whole;
        static_cast<cimd::AssociatorNamesRequest&>(whole) = overOne;
        cimd::ReferenceNamesRequest inRole;
        inRole.nameSpace = kNameSpace;
        inRole.path = port;
        cimd::ReferencesRequest pairs;
        static_cast<cimd::ReferenceNamesRequest&>(pairs) = inRole;
        pairs.resultClass = cimd::CimName("VRAX_MemberOfFCNode");
        inRole.role = cimd::CimName("Member");

        const cimd::CimService& service = agent.service();
        measure(names, paths, [&] { service.associatorNames(client, overOne, paths); });
        measure(all, paths, [&] { service.associatorNames(client, anywhere, paths); });
        measure(associators, instances, [&] { service.associators(client, whole, instances); });
        measure(references, instances, [&] { service.references(client, pairs, instances); });
        measure(role, paths, [&] { service.referenceNames(client, inRole, paths); });
    }
    for (const Growth* growth : {&names, &all, &associators, &references, &role})
        growth->print();
    benchPairs();
}

} // namespace bench
