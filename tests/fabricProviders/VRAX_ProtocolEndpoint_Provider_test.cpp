// Tests of the protocol endpoints of switch ports and attached node ports.
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"
#include "platform/data_cache.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

using simulator::NodeScenario;
using simulator::SimSwitch;

constexpr const char* kLocalWwn = "100002a5C0de0001";
constexpr const char* kRemotePortWwn = "200102A5c0de1002";
constexpr const char* kNodeWwn = "210000e08b00aBcd";

NodeScenario node(int domain, int port, const char* portWwn)
{
    NodeScenario one;
    one.domain = domain;
    one.port = port;
    one.portWwn = portWwn;
    return one;
}

// A local switch of domain 1 with two ports, a node on the second; a remote switch of domain 2 with two
// ports, a node on its first.
class Endpoints : public Switch_Test
{
  protected:
    void SetUp() override
    {
        simulator::Scenario scenario = SimSwitch::make()
                                           .wwn(kLocalWwn)
                                           .ports(2)
                                           .remote(2, 2)
                                           .node(node(1, 1, kNodeWwn))
                                           .node(node(2, 0, "2100000000000004"))
                                           .scenario();
        scenario.switches[1].ports[1].wwn = kRemotePortWwn;
        remoteWwn = scenario.switches[1].wwn;
        sim.open(scenario);
    }
    // Of the port with this index.
    static std::string localName(const std::string& index)
    {
        return DataCache::instance()->calcPortWwn(Wwn(kLocalWwn), index).toString();
    }
    std::string remoteName(std::size_t port) { return sim.scenario().switches.at(1).ports.at(port).wwn; }

    typedef std::vector<std::string> Texts;
    Texts names()
    {
        Texts result;
        for (Description& one : instances<VRAX_ProtocolEndpoint_Provider>())
            result.push_back(one["Name"]);
        return result;
    }

    std::string remoteWwn;
};

TEST_F(Endpoints, PublishTheListedPropertiesAndNoOthersSwitchBySwitch)
{
    const auto endpoint =
        [](const std::string& systemClass, const std::string& system, const std::string& name)
    {
        return Description{{"SystemCreationClassName", systemClass},
                           {"SystemName", system},
                           {"CreationClassName", "VRAX_ProtocolEndpoint"},
                           {"Name", name},
                           {"NameFormat", "WWN"},
                           {"ProtocolType", "18"},
                           {"ProtocolIFType", "56"}};
    };
    // Switch ports keep the cache's letter case, node ports are upper-cased. The fabric is named by its
    // principal switch, wherever the node is attached.
    const auto expected = [&](const std::string& fabricWwn)
    {
        return std::vector<Description>{endpoint("VRAX_FCSwitch", kLocalWwn, localName("0")),
                                        endpoint("VRAX_FCSwitch", kLocalWwn, localName("1")),
                                        endpoint("VRAX_Fabric", fabricWwn, "210000E08B00ABCD"),
                                        endpoint("VRAX_FCSwitch", remoteWwn, remoteName(0)),
                                        endpoint("VRAX_FCSwitch", remoteWwn, kRemotePortWwn),
                                        endpoint("VRAX_Fabric", fabricWwn, "2100000000000004")};
    };
    EXPECT_EQ(instances<VRAX_ProtocolEndpoint_Provider>(), expected(kLocalWwn));
    sim.setPrincipal(2);
    clock.outlive();
    EXPECT_EQ(instances<VRAX_ProtocolEndpoint_Provider>(), expected(remoteWwn));
    sim.setPrincipal(0);
    clock.outlive();
    EXPECT_EQ(instances<VRAX_ProtocolEndpoint_Provider>(), expected("")) << "no fabric name";
}

TEST_F(Endpoints, AreReadOneByOneAndServedFromTheMapWhileFresh)
{
    names();
    EXPECT_EQ(sim.batches(),
              (std::vector<Texts>{{"Oper.UserPort.0.0.OperState"},
                                  {"Oper.UserPort.0.1.OperState"},
                                  {"Oper.NameServerAll.1.Entry.010100.PortWwn"},
                                  {"Oper.TopologyAll.2.Entry.0.PortState"},
                                  {"Oper.TopologyAll.2.Entry.1.PortState"},
                                  {"Oper.NameServerAll.2.Entry.020000.PortWwn"}}));
    EXPECT_EQ(sim.calls("DataCache::dcRdLock"), 1u);
    sim.mark();
    EXPECT_EQ(names().size(), 6u);
    EXPECT_EQ(sim.platformCalls(), 0u);
}

// Only the exact state counts, and only for switch ports.
TEST_F(Endpoints, OfSwitchPortsAreThoseOfOnlinePorts)
{
    const std::string local = "Oper.UserPort.0.0.OperState";
    const std::string remote = "Oper.TopologyAll.2.Entry.1.PortState";
    const Texts all = names();
    Texts withoutLocal = all;
    withoutLocal.erase(withoutLocal.begin());
    Texts withoutRemote = all;
    withoutRemote.erase(withoutRemote.begin() + 4);

    const std::pair<const char*, bool> rows[] = {{"Online", true},
                                                 {"online", false},
                                                 {"ONLINE", false},
                                                 {"Online ", false},
                                                 {"Offline", false},
                                                 {"Isolated", false},
                                                 {"", false}};
    for (const auto& [state, published] : rows)
    {
        sim.answer(local, state);
        clock.outlive();
        EXPECT_EQ(names(), published ? all : withoutLocal) << '"' << state << '"';
        sim.restore();
        sim.answer(remote, state);
        clock.outlive();
        EXPECT_EQ(names(), published ? all : withoutRemote) << '"' << state << '"';
        sim.restore();
    }

    sim.portDown(0);
    clock.outlive();
    EXPECT_EQ(names(), withoutLocal);
}

TEST_F(Endpoints, LeaveOutSilentlyWhatCannotBeRead)
{
    const Texts all = names();
    const auto expectLeftOut = [&](std::size_t place, const std::string& what)
    {
        const Log_Capture log;
        clock.outlive();
        Texts expected = all;
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
        EXPECT_EQ(names(), expected) << what;
        EXPECT_EQ(log.texts(), Texts()) << what;
        sim.restore();
    };
    const char* const keys[] = {"Oper.UserPort.0.0.OperState",
                                "Oper.UserPort.0.1.OperState",
                                "Oper.NameServerAll.1.Entry.010100.PortWwn",
                                "Oper.TopologyAll.2.Entry.0.PortState",
                                "Oper.TopologyAll.2.Entry.1.PortState",
                                "Oper.NameServerAll.2.Entry.020000.PortWwn"};
    for (std::size_t place = 0; place < all.size(); ++place)
    {
        sim.failKey(keys[place]);
        expectLeftOut(place, keys[place]);
        sim.failKey(keys[place], XPL_NOT_AVAILABLE);
        expectLeftOut(place, std::string("no value: ") + keys[place]);
        sim.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, static_cast<int>(place));
        expectLeftOut(place, std::string("call: ") + keys[place]);
    }
}

TEST_F(Endpoints, AnEmptyPortWwnEndsTheWalkOverASwitchsOwnPorts)
{
    const std::string first = localName("0");
    sim.failNext("DataCache::calcPortWwn", 1, XPL_UNREACHABLE, 1);
    sim.failNext("SwitchCache::getFirstPort");
    EXPECT_EQ(names(), (Texts{first, "210000E08B00ABCD", "2100000000000004"}));
}

TEST_F(Endpoints, OfPortsThatClaimOneWwnTheFirstOneStays)
{
    sim.addNode(node(2, 1, "210000E08B00AbCD"));
    // A switch port of the same WWN belongs to another system and is another endpoint.
    sim.addNode(node(2, 1, kRemotePortWwn));
    EXPECT_EQ(names(),
              (Texts{localName("0"),
                     localName("1"),
                     "210000E08B00ABCD",
                     remoteName(0),
                     kRemotePortWwn,
                     "2100000000000004",
                     "200102A5C0DE1002"}));
}

TEST_F(Endpoints, FailuresOfTheLoadAndTheirMessages)
{
    const std::string origin = "Exception[CRIT]:fabricProviders/VRAX_ProtocolEndpoint_Provider:load[] ";
    sim.refuseCacheLock();
    expectLoadFails<VRAX_ProtocolEndpoint_Provider>(origin + "Unable to obtaion datacache rdlock");
    for (int successes : {0, 2, 3}) // of a local, an attached and a remote port
        expectStepsFail<VRAX_ProtocolEndpoint_Provider>(
            origin, {"Unable to create instance of VRAX_ProtocolEndpoint", nullptr, nullptr}, successes);
    {
        // What the map refuses is left out, and the load succeeds.
        const Log_Capture log;
        const Insert_Failures failures("VRAX_ProtocolEndpoint", 1);
        EXPECT_EQ(names(), Texts{localName("0")});
        EXPECT_EQ(log.texts(), Texts());
    }
    clock.outlive();
    EXPECT_EQ(names().size(), 6u);
}

} // namespace
} // namespace cimple
