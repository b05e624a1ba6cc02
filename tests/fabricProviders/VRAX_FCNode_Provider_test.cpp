// Tests of the nodes attached to the fabric.
#include "fabricProviders/VRAX_FCNode_Provider.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

using simulator::NodeScenario;
using simulator::SimSwitch;

NodeScenario node(int domain, std::uint32_t address, const char* portWwn)
{
    NodeScenario one;
    one.domain = domain;
    one.port = static_cast<int>(address >> 8 & 0xff);
    one.address = address;
    one.portWwn = portWwn;
    return one;
}

// Two nodes on the local switch of domain 1, one on the remote switch of domain 2.
class Nodes : public Switch_Test
{
  protected:
    void SetUp() override
    {
        NodeScenario host = node(1, 0x010100, "210000e08b00aBcd");
        host.nodeWwn = "200000e08b00aBcd";
        host.nodeName = "host-A lpar 3";
        sim.open(SimSwitch::make()
                     .remote(2, 4)
                     .node(host)
                     .node(node(1, 0x010300, "2100000000000003"))
                     .node(node(2, 0x020000, "2100000000000004"))
                     .scenario());
    }
    std::vector<std::string> ids()
    {
        std::vector<std::string> result;
        for (Description& one : instances<VRAX_FCNode_Provider>())
            result.push_back(one["InstanceID"]);
        return result;
    }
    typedef std::vector<std::string> Texts;
};

TEST_F(Nodes, PublishTheListedPropertiesUpperCasedAndNoOthers)
{
    EXPECT_EQ(instances<VRAX_FCNode_Provider>(),
              (std::vector<Description>{
                  {{"InstanceID", "210000E08B00ABCD"},
                   {"Name", "200000E08B00ABCD"},
                   {"ElementName", "HOST-A LPAR 3"},
                   {"NameFormat", "WWN"}},
                  // The node WWN is the port's own, and the node has no symbolic name.
                  {{"InstanceID", "2100000000000003"},
                   {"Name", "2100000000000003"},
                   {"ElementName", ""},
                   {"NameFormat", "WWN"}},
                  {{"InstanceID", "2100000000000004"},
                   {"Name", "2100000000000004"},
                   {"ElementName", ""},
                   {"NameFormat", "WWN"}},
              }));
}

TEST_F(Nodes, AreReadInOneBatchEachAndServedFromTheMapWhileFresh)
{
    ids();
    const auto batch = [](const std::string& entry)
    {
        return Texts{"Oper.NameServerAll." + entry + ".NodeWwn",
                     "Oper.NameServerAll." + entry + ".PortWwn",
                     "Oper.NameServerAll." + entry + ".FabricPortName",
                     "Oper.NameServerAll." + entry + ".SymNodeName"};
    };
    EXPECT_EQ(
        sim.batches(),
        (std::vector<Texts>{batch("1.Entry.010100"), batch("1.Entry.010300"), batch("2.Entry.020000")}));
    EXPECT_EQ(sim.calls("DataCache::dcRdLock"), 1u);
    sim.mark();
    EXPECT_EQ(ids().size(), 3u);
    EXPECT_EQ(sim.platformCalls(), 0u);
}

TEST_F(Nodes, OfOnePortWwnTheFirstEntryCountsWhateverItsLetterCase)
{
    NodeScenario moved = node(2, 0x020100, "210000E08B00AbCD");
    moved.nodeName = "moved";
    sim.addNode(moved);
    // Two ports of one node are two instances that share the node's name.
    NodeScenario second = node(2, 0x020200, "210100e08b00abcd");
    second.nodeWwn = "200000e08b00abcd";
    sim.addNode(second);

    const std::vector<Description> all = instances<VRAX_FCNode_Provider>();
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(all[0].at("InstanceID"), "210000E08B00ABCD");
    EXPECT_EQ(all[0].at("ElementName"), "HOST-A LPAR 3");
    EXPECT_EQ(all[3].at("InstanceID"), "210100E08B00ABCD");
    EXPECT_EQ(all[3].at("Name"), all[0].at("Name"));

    // The skipped entry creates nothing: a fourth creation would be the second port's.
    const Create_Failures failures("VRAX_FCNode", 4);
    clock.outlive();
    EXPECT_EQ(ids().size(), 4u);
}

TEST_F(Nodes, LeaveOutSilentlyWhatCannotBeRead)
{
    const std::string entry = "Oper.NameServerAll.1.Entry.010300.";
    struct Row
    {
        const char* what;
        std::function<void(SimSwitch&)> happen;
        bool published;
    };
    const Row rows[] = {
        {"nothing", [](SimSwitch&) {}, true},
        {"the batch fails",
         [](SimSwitch& s) { s.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, 1); },
         false},
        {"no node WWN", [&](SimSwitch& s) { s.failKey(entry + "NodeWwn"); }, false},
        {"no port WWN", [&](SimSwitch& s) { s.failKey(entry + "PortWwn", XPL_UNKNOWN_KEY); }, false},
        {"no fabric port name", [&](SimSwitch& s) { s.failKey(entry + "FabricPortName"); }, false},
        {"no symbolic name", [&](SimSwitch& s) { s.failKey(entry + "SymNodeName"); }, false},
        {"no port WWN yet", [&](SimSwitch& s) { s.failKey(entry + "PortWwn", XPL_NOT_AVAILABLE); }, false},
        {"no symbolic name yet",
         [&](SimSwitch& s) { s.failKey(entry + "SymNodeName", XPL_NOT_AVAILABLE); },
         true},
    };
    for (const Row& row : rows)
    {
        const Log_Capture log;
        sim.restore();
        row.happen(sim);
        clock.outlive();
        EXPECT_EQ(ids(),
                  row.published ? (Texts{"210000E08B00ABCD", "2100000000000003", "2100000000000004"})
                                : (Texts{"210000E08B00ABCD", "2100000000000004"}))
            << row.what;
        EXPECT_EQ(log.texts(), Texts()) << row.what;
    }
}

TEST_F(Nodes, ComeAndGoWithTheLoads)
{
    sim.removeNode("2100000000000003");
    sim.removeSwitch(2);
    EXPECT_EQ(ids(), Texts{"210000E08B00ABCD"});
    sim.addNode(node(1, 0x010200, "2100000000000005"));
    EXPECT_EQ(ids(), Texts{"210000E08B00ABCD"}) << "still fresh";
    clock.outlive();
    EXPECT_EQ(ids(), (Texts{"210000E08B00ABCD", "2100000000000005"}));
    sim.failNext("DataCache::getFabric");
    clock.outlive();
    EXPECT_EQ(ids(), Texts()) << "without a fabric there are no nodes";
}

TEST_F(Nodes, FailuresOfTheLoadAndTheirMessages)
{
    const std::string origin = "Exception[CRIT]:fabricProviders/VRAX_FCNode_Provider:load[] ";
    sim.refuseCacheLock();
    expectLoadFails<VRAX_FCNode_Provider>(origin + "Unable to obtaion datacache rdlock");
    expectStepsFail<VRAX_FCNode_Provider>(
        origin,
        {"Unable to create instance of VRAX_FCNode", nullptr, "Failed to insert into VRAX_FCNode_map\n"},
        1);
    EXPECT_EQ(ids().size(), 3u);
}

} // namespace
} // namespace cimple
