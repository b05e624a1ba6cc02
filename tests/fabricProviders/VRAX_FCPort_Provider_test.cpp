// Tests of what is published of the ports: where each property comes from, which ports are left out, and how
// a load fails.
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "platform/data_cache.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

using simulator::NodeScenario;
using simulator::PortScenario;
using simulator::SimSwitch;
using simulator::SimSwitchSetup;

const std::string kLocalWwn = "100002a5C0DE00ff";  // mixed case, so that a change of case shows
const std::string kRemoteWwn = "100002a5c0de1003"; // of domain 3
constexpr int kDomain = 26;
const std::string kOrigin = "Exception[CRIT]:fabricProviders/VRAX_FCPort_Provider:load[] ";

std::string localKey(int port, const std::string& attribute)
{
    return "Oper.UserPort.0." + std::to_string(port) + "." + attribute;
}
std::string remoteKey(int entry, const std::string& attribute)
{
    return "Oper.TopologyAll.3.Entry." + std::to_string(entry) + "." + attribute;
}

// Two ports of switch 3 and a node at it, then twelve local ports and a node: 16 in all.
class FCPort : public Switch_Test
{
  protected:
    static constexpr std::size_t kRemotePorts = 2;
    static constexpr std::size_t kLocalPorts = 12;
    // Places of the four kinds in the order of the walk.
    static constexpr std::size_t kFarNode = kRemotePorts;
    static constexpr std::size_t kFirstLocal = kFarNode + 1;
    static constexpr std::size_t kNearNode = kFirstLocal + kLocalPorts;
    static constexpr std::size_t kAll = kNearNode + 1;

    void SetUp() override { sim.open(setup().scenario()); }

    static SimSwitchSetup setup()
    {
        return SimSwitch::make()
            .wwn(kLocalWwn)
            .domain(kDomain)
            .ports(kLocalPorts)
            .remote(3, kRemotePorts)
            .principal(3)
            .node(3, 1, "2100026e1A40b7c1")
            .node(kDomain, 11, "2100026e1A40b7d9");
    }

    std::vector<Description> all()
    {
        clock.outlive();
        return instances<VRAX_FCPort_Provider>();
    }
    Description local(std::size_t port) { return all().at(kFirstLocal + port); }

    static std::string portWwn(int port)
    {
        return DataCache::instance()->calcPortWwn(Wwn(kLocalWwn), std::to_string(port)).toString();
    }
};

TEST_F(FCPort, PublishesALocalPort)
{
    struct Row
    {
        const char* attribute;
        const char* value;
    };
    // Every property shows from which attribute it is.
    const Row rows[] = {
        {"SymPortName", "array-b ctl1"},
        {"OperState", "Isolated"},
        {"AdminState", "Online"},
        {"WWN", "2a0b02a5c0de00fe"},
        {"RunningType", "FL"},
        {"LinkSpeed", "4Gb/s"},
        {"SpeedCapability", "8Gb/s"},
        {"IOStreamGuardMode", "Disabled"},
        {"PerfTuningMode", "LCF-VI"},
        {"MaxCredit", "33"},
        {"DiagStatus", "Passed"},
    };
    std::vector<std::string> keys;
    for (const Row& row : rows)
    {
        keys.push_back(localKey(11, row.attribute));
        sim.answer(keys.back(), row.value);
    }
    keys.push_back("Oper.Switch.Echo.11");
    keys.push_back("Oper.Switch.Echo." + portWwn(11));
    sim.mark();
    EXPECT_EQ(local(11),
              (Description{
                  {"SystemCreationClassName", "VRAX_FCSwitch"},
                  {"SystemName", kLocalWwn},
                  {"CreationClassName", "VRAX_FCPort"},
                  {"DeviceID", kLocalWwn + ":" + portWwn(11)},
                  {"ElementName", "array-b ctl1"},
                  {"OperationalStatus", "[6]"},
                  {"HealthState", "5"},
                  {"EnabledState", "2"},
                  {"RequestedState", "5"},
                  {"EnabledDefault", "2"},
                  {"PermanentAddress", "2A0B02A5C0DE00FE"},
                  {"PortType", "16"},
                  {"Speed", "4250000000"},
                  {"MaxSpeed", "8500000000"},
                  {"PortNumber", "11"},
                  {"LinkTechnology", "4"},
                  {"NetworkAddresses", "[1A0B00]"},
                  {"IOStreamGuardState", "3"},
                  {"PerformanceTuningMode", "6"},
                  {"BBCredits", "33"},
              }));
    EXPECT_EQ(sim.batches().at(kFirstLocal + 11), keys) << "the order of the batch";
}

TEST_F(FCPort, ALocalPortsPropertiesFollowWhatTheSwitchSays)
{
    const std::string computed = "200402A5C0DE00FF";
    struct Row
    {
        const char* attribute;
        const char* value;
        const char* property;
        std::string published;
    };
    const Row rows[] = {
        {"AdminState", "Online", "EnabledDefault", "2"},
        {"AdminState", "Offline", "EnabledState", "3"},
        {"AdminState", "Offline", "EnabledDefault", "3"},
        {"AdminState", "Diagnostics", "EnabledState", "7"},
        {"AdminState", "Diagnostics", "EnabledDefault", "3"},
        {"AdminState", "elsewhere", "EnabledState", "0"},
        {"AdminState", "elsewhere", "EnabledDefault", "3"},
        {"OperState", "Downed", "OperationalStatus", "[6]"}, // though it should be online
        {"DiagStatus", "Failed", "HealthState", "25"},
        {"WWN", "0000000000000000", "PermanentAddress", computed},
        {"WWN", "", "PermanentAddress", computed},
        {"WWN", "00000000000000a0", "PermanentAddress", "00000000000000A0"},
        {"RunningType", "Unknown", "PortType", "0"},
        {"LinkSpeed", "Unknown", "Speed", "0"},
        {"MaxCredit", "none", "BBCredits", "0"},
        {"MaxCredit", "12 of 16", "BBCredits", "12"},
        {"SymPortName", "", "ElementName", ""},
        {"SymPortName", "Mixed Case", "ElementName", "Mixed Case"},
    };
    for (const Row& row : rows)
    {
        sim.answer(localKey(4, row.attribute), row.value);
        Description port = local(4);
        ASSERT_EQ(port.count(row.property), 1u) << row.attribute << " = " << row.value;
        EXPECT_EQ(port[row.property], row.published) << row.attribute << " = " << row.value;
        sim.restore();
    }
    sim.answer(localKey(4, "OperState"), "Isolated");
    sim.answer(localKey(4, "AdminState"), "Offline");
    EXPECT_EQ(local(4)["OperationalStatus"], "[10]");
}

TEST_F(FCPort, AnUntestedPortIsOfUnknownHealth)
{
    sim.failKey(localKey(4, "DiagStatus"), XPL_NOT_AVAILABLE);
    EXPECT_EQ(local(4)["HealthState"], "0");
    EXPECT_EQ(local(5)["HealthState"], "5");
}

TEST_F(FCPort, TheHardwareSaysWhichAttributeTellsTheHighestSpeed)
{
    sim.changePort(4,
                   [](PortScenario& port)
                   {
                       port.hardware = simulator::PortHardware::ethernet;
                       port.speedCapability = simulator::LinkSpeed::gb10;
                   });
    sim.mark();
    EXPECT_EQ(local(4)["MaxSpeed"], "12750000000");
    EXPECT_EQ(sim.batches().at(kFirstLocal + 4).at(6), localKey(4, "EthSpeedCapability"));
    EXPECT_EQ(sim.batches().at(kFirstLocal + 5).at(6), localKey(5, "SpeedCapability"));
    // A port whose kind is unknown is taken for Fibre Channel.
    sim.mark();
    sim.failNext("DataCache::getPortHWType", 1, XPL_UNREACHABLE, 4);
    local(4);
    EXPECT_EQ(sim.batches().at(kFirstLocal + 4).at(6), localKey(4, "SpeedCapability"));
}

TEST_F(FCPort, ALocalPortsAddressIsDomainAndPortInUpperCaseHexadecimal)
{
    struct Row
    {
        int domain;
        int ports;
        const char* last;
    };
    const Row rows[] = {
        {1, 6, "[010500]"}, {26, 12, "[1A0B00]"}, {239, 1, "[EF0000]"}, {10, 256, "[0AFF00]"}};
    for (const Row& row : rows)
    {
        sim.open(SimSwitch::make().domain(row.domain).ports(row.ports).scenario());
        EXPECT_EQ(all().back()["NetworkAddresses"], row.last);
    }
}

TEST_F(FCPort, PublishesAPortOfAnotherSwitch)
{
    const std::vector<std::string> keys = {remoteKey(1, "PortState"),
                                           remoteKey(1, "PortType"),
                                           remoteKey(1, "PortWwn"),
                                           remoteKey(1, "PortNumber")};
    const char* const values[] = {"Isolated", "E", "20fe02a5c0de1003", "007"};
    for (std::size_t i = 0; i < keys.size(); ++i)
        sim.answer(keys[i], values[i]);
    sim.mark();
    const Description expected = {
        {"SystemCreationClassName", "VRAX_FCSwitch"},
        {"SystemName", kRemoteWwn},
        {"CreationClassName", "VRAX_FCPort"},
        {"DeviceID", kRemoteWwn + ":200102a5c0de1003"}, // as the topology names it
        {"ElementName", "Port 007"},
        {"OperationalStatus", "[6]"},
        {"EnabledState", "5"},
        {"RequestedState", "12"},
        {"EnabledDefault", "5"},
        {"PermanentAddress", "20FE02A5C0DE1003"},
        {"PortType", "14"},
        {"Speed", "0"},
        {"MaxSpeed", "0"},
        {"PortNumber", "7"},
        {"LinkTechnology", "4"},
    };
    EXPECT_EQ(all().at(1), expected);
    EXPECT_EQ(sim.batches().at(1), keys) << "the order of the batch";

    // The state stands for both states that the status is made of.
    for (const auto& [state, status] : {std::pair("Online", "[2]"), std::pair("Downed", "[10]")})
    {
        sim.answer(keys[0], state);
        EXPECT_EQ(all().at(1)["OperationalStatus"], status) << state;
    }
}

TEST_F(FCPort, APortOfAnotherSwitchWithoutANameIsNotPublished)
{
    sim.answer(remoteKey(0, "PortWwn"), "0000000000000000");
    const std::vector<Description> ports = all();
    EXPECT_EQ(ports.size(), kAll - 1);
    EXPECT_EQ(ports.at(0).at("DeviceID"), kRemoteWwn + ":200102a5c0de1003");
}

TEST_F(FCPort, PublishesAnAttachedNodePort)
{
    const std::string address = "1a0b00";
    const std::string entry = "Oper.NameServerAll.26.Entry." + address + ".";
    const std::vector<std::string> keys = {entry + "PortWwn",
                                           entry + "SymPortName",
                                           entry + "PortType",
                                           entry + "COSList",
                                           entry + "FC4StdTypeList",
                                           "Oper.Switch.Echo." + address,
                                           "Oper.Switch.WhoIsPrincipal"};
    sim.answer(keys[1], "db-oslo-02 hba0");
    sim.answer(keys[2], "NL");
    sim.answer(keys[3], "2,3,F");
    sim.answer(keys[4], "FCP,FCIP");
    sim.answer(keys[6], "100002a5c0de10ab");
    sim.mark();
    EXPECT_EQ(all().at(kNearNode),
              (Description{
                  {"SystemCreationClassName", "VRAX_Fabric"},
                  {"SystemName", "100002A5C0DE10AB"},
                  {"CreationClassName", "VRAX_FCPort"},
                  {"DeviceID", "2100026E1A40B7D9"},
                  {"ElementName", "db-oslo-02 hba0"},
                  {"OperationalStatus", "[0]"},
                  {"PermanentAddress", "2100026E1A40B7D9"},
                  {"PortType", "11"},
                  {"LinkTechnology", "4"},
                  {"NetworkAddresses", "[1A0B00]"},
                  {"SupportedCOS", "[2, 3, 7]"},
                  {"SupportedFC4Types", "[8, 5]"},
              }));
    EXPECT_EQ(sim.batches().at(kNearNode), keys) << "the order of the batch";
}

TEST_F(FCPort, ReadsEachPortInOneBatchAndAFreshMapNotAtAll)
{
    EXPECT_EQ(all().size(), kAll);
    EXPECT_EQ(sim.calls("xpl_smlGetBatch"), kAll);
    EXPECT_EQ(sim.entries("xpl_smlGetBatch"), 13 * kLocalPorts + 4 * kRemotePorts + 7 * 2);
    EXPECT_EQ(sim.calls("DataCache::dcRdLock"), 1u);
    sim.mark();
    EXPECT_EQ(instances<VRAX_FCPort_Provider>().size(), kAll);
    EXPECT_EQ(sim.platformCalls(), 0u);

    // What came and went shows after the next load.
    sim.removeNode("2100026e1A40b7d9");
    EXPECT_EQ(instances<VRAX_FCPort_Provider>().size(), kAll);
    EXPECT_EQ(all().size(), kAll - 1);
    sim.removeSwitch(3);
    EXPECT_EQ(all().size(), kLocalPorts);
}

TEST_F(FCPort, LeavesOutSilentlyWhatCannotBeRead)
{
    const std::vector<Description> complete = all();
    struct Row
    {
        std::string key; // empty: the batch as a whole fails
        std::size_t missing;
    };
    const Row rows[] = {
        {remoteKey(0, "PortState"), 0},
        {remoteKey(1, "PortNumber"), 1},
        {"Oper.NameServerAll.3.Entry.030100.FC4StdTypeList", kFarNode},
        {localKey(0, "SymPortName"), kFirstLocal},
        {localKey(5, "DiagStatus"), kFirstLocal + 5},
        {"Oper.Switch.Echo." + portWwn(11), kFirstLocal + 11},
        {"Oper.Switch.Echo.1a0b00", kNearNode},
        {"", 1},
        {"", kFarNode},
        {"", kFirstLocal + 7},
    };
    for (const Row& row : rows)
    {
        if (row.key.empty())
            sim.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, static_cast<int>(row.missing));
        else
            sim.failKey(row.key);
        const Log_Capture log;
        std::vector<Description> expected = complete;
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row.missing));
        EXPECT_EQ(all(), expected) << row.key << " " << row.missing;
        EXPECT_TRUE(log.take().empty()) << row.key;
        sim.restore();
    }
}

TEST_F(FCPort, FailuresOfTheLoad)
{
    sim.refuseCacheLock();
    expectLoadFails<VRAX_FCPort_Provider>(kOrigin + "Unable to obtaion datacache rdlock");
    struct Row
    {
        std::size_t place;
        const char* kind;
    };
    const Row rows[] = {{0, "port_entry"},
                        {kFarNode, "attached_port_entry"},
                        {kFirstLocal + 3, "local_port_entry"},
                        {kNearNode, "attached_port_entry"}};
    for (const Row& row : rows)
    {
        const std::string refused = std::string("Failed to insert into VRAX_FCPort_map (") + row.kind + ")";
        expectStepsFail<VRAX_FCPort_Provider>(kOrigin,
                                              {"Unable to create instance of VRAX_FCPort",
                                               "VRAXFCPort::One or more Key Properties not populated",
                                               refused.c_str()},
                                              static_cast<int>(row.place));
    }
    EXPECT_EQ(instances<VRAX_FCPort_Provider>().size(), kAll);
}

TEST_F(FCPort, TwoNodePortsWithOneNameFailTheLoadUntilOneIsGone)
{
    NodeScenario twin;
    twin.domain = kDomain;
    twin.port = 2;
    twin.portWwn = "2100026E1A40B7C1"; // the node at switch 3 writes it in another case
    sim.addNode(twin);
    expectLoadFails<VRAX_FCPort_Provider>(kOrigin +
                                          "Failed to insert into VRAX_FCPort_map (attached_port_entry)");
    sim.removeNode(twin.portWwn);
    EXPECT_EQ(instances<VRAX_FCPort_Provider>().size(), kAll);
}

TEST_F(FCPort, NodePortsAreLeftOutWhileTheFabricHasNoPrincipalSwitchToNameIt)
{
    sim.setPrincipal(0);
    const auto ports = all();
    EXPECT_EQ(ports.size(), kAll - 2);
    for (Description port : ports)
        EXPECT_EQ(port["SystemCreationClassName"], "VRAX_FCSwitch");
    sim.setPrincipal(kDomain);
    clock.outlive();
    EXPECT_EQ(all().at(kNearNode)["SystemName"], "100002A5C0DE00FF");
}

} // namespace
} // namespace cimple
