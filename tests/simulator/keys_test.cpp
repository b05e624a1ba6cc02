// Tests of the attribute store: which keys answer what, how batches end, what writes change.
#include "platform/switch_server.h"
#include "simulator/keys/KeyRegistry.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

using namespace simulator;

namespace
{

TEST(KeyRegistry, FindsByPartsAndTakesArguments)
{
    KeyRegistry<int> registry;
    registry.add("Oper.UserPort.0.%s.LinkSpeed", 1);
    registry.add("Oper.UserPort.0.%s.C64.InvalidCRCs", 2);
    registry.add("Oper.Switch.Echo.%*", 3);
    registry.add("Config.UserPort.0.%d.Type.%*", 4);
    struct
    {
        const char* key;
        int handler; // 0: none
        std::string first, second;
    } const rows[] = {
        {"Oper.UserPort.0.17.LinkSpeed", 1, "17", ""},
        {"Oper.UserPort.0.17.C64.InvalidCRCs", 2, "17", ""},
        {"Oper.UserPort.0..LinkSpeed", 1, "", ""},
        {"Oper.Switch.Echo.a.b.c", 3, "a.b.c", ""},
        {"Oper.Switch.Echo.", 3, "", ""},
        {"Config.UserPort.0.5.Type.G.x", 4, "5", "G.x"},
        {"Oper.Switch.Echo", 0, "", ""},
        {"Oper.UserPort.0.17", 0, "", ""},
        {"Oper.UserPort.0.17.LinkSpeed.", 0, "", ""},
        {"Oper.UserPort.1.17.LinkSpeed", 0, "", ""},
        {"oper.UserPort.0.17.LinkSpeed", 0, "", ""},
        {".Oper", 0, "", ""},
        {"", 0, "", ""},
    };
    for (const auto& row : rows)
    {
        KeyArguments arguments;
        const int* handler = registry.find(row.key, arguments);
        EXPECT_EQ(row.handler, handler != nullptr ? *handler : 0) << row.key;
        if (handler != nullptr)
        {
            EXPECT_EQ(row.first, arguments[0]) << row.key;
            EXPECT_EQ(row.second, arguments[1]) << row.key;
        }
    }
    EXPECT_THROW(registry.add("Oper.UserPort.0.%d.LinkSpeed", 5), std::logic_error);
    EXPECT_THROW(registry.add("a.%s.%s.%s.%s.%s", 6), std::logic_error);
}

// One switch with a port in each interesting condition.
Scenario conditions()
{
    SimSwitchSetup setup;
    setup.ports(12).wwn("100002A5C0DE00aB").remote(2, 2).isl({1, 10, 2, 0, false}).isl({1, 11, 2, 1, true});
    const auto change = [&setup](int number, auto how) { setup.port(number, how); };
    change(0, [](PortScenario& p) { p.link = LinkState::automatic; });
    change(1, [](PortScenario& p) { p.adminState = AdminState::offline; });
    change(2, [](PortScenario& p) { p.adminState = AdminState::diagnostics; });
    change(3, [](PortScenario& p) { p.failed = true; });
    change(4,
           [](PortScenario& p) { p.hardware = PortHardware::ethernet, p.speedCapability = LinkSpeed::gb10; });
    change(5, [](PortScenario& p) { p.type = PortType::th, p.diagnostics = DiagStatus::unavailable; });
    change(6, [](PortScenario& p) { p.link = LinkState::automatic; });
    change(7, [](PortScenario& p) { p.wwn = "0000000000000000", p.diagnostics = DiagStatus::failed; });
    change(8,
           [](PortScenario& p) { p.autoPerfTuning = false, p.lcf = p.vi = true, p.rscn = RscnEnable::no; });
    change(9, [](PortScenario& p) { p.type = PortType::g; });
    NodeScenario host;
    host.domain = 1;
    host.port = 6;
    host.portWwn = "210002A5c0de0006";
    host.role = NodeRole::initiator;
    host.type = NodePortType::nl;
    host.speed = LinkSpeed::gb4;
    setup.node(host).node(1, 9, "210002a5c0de0009");
    return setup.scenario();
}

TEST(Keys, TellTheConditionOfPorts)
{
    const SimSwitch sim(conditions());
    struct
    {
        const char* of;
        std::string attributes; // and their values; "!2" for status 2
    } const rows[] = {
        {"Oper.Switch", "WWN 100002A5C0DE00aB Echo.20.05 20.05 WhoIsPrincipal 100002A5C0DE00aB"},
        {"Oper.Fabric.Entry", "2.SymNodeName remote-2 3.WWN !2"},
        {"Oper.UserPort.0.0", "OperState Offline RunningType Unknown LinkSpeed Unknown"},
        {"Oper.UserPort.0.1", "AdminState Offline"},
        {"Oper.UserPort.0.2", "OperState Diagnostics"},
        {"Oper.UserPort.0.3", "OperState Downed"},
        {"Oper.UserPort.0.4", "EthSpeedCapability 10Gb/s SpeedCapability !16"},
        {"Oper.UserPort.0.5", "EthSpeedCapability !16 RunningType TH DiagStatus !16"},
        // A node is attached, which is an initiator: left to itself, the port guards it.
        {"Oper.UserPort.0.6", "OperState Online RunningType FL LinkSpeed 4Gb/s IOStreamGuardMode Enabled"},
        {"Oper.UserPort.0.6", "WWN 200602A5C0DE00aB Colour !2"},
        {"Oper.UserPort.0.7", "WWN 0000000000000000 DiagStatus Failed"},
        // Up, with nobody there.
        {"Oper.UserPort.0.8", "PerfTuningMode LCF-VI IOStreamGuardMode Enabled RunningType GL"},
        {"Oper.UserPort.0.9", "RunningType F IOStreamGuardMode Disabled MaxCredit 16"},
        {"Oper.UserPort.0.10", "RunningType E"},
        {"Oper.UserPort.0.11", "OperState Isolated"},
        {"Oper.UserPort.0", "06.OperState !2 -1.OperState !2"}, // no index the cache hands out
        {"Oper.TopologyAll.2.Entry", "0.PortType E 1.PortState Isolated 1.PortNumber 1 2.PortState !2"},
        {"Oper.NameServerAll.1.Entry.010600",
         "PortWwn 210002A5c0de0006 NodeWwn 210002A5c0de0006 PortType NL"},
        {"Oper.NameServerAll.1.Entry.010600", "FabricPortName 200602A5C0DE00aB"},
        {"Oper.NameServerAll.2.Entry.010600", "PortWwn !2"},
    };
    for (const auto& row : rows)
    {
        std::istringstream words(row.attributes);
        for (std::string name, value; words >> name >> value;)
        {
            const std::string key = row.of + ("." + name);
            EXPECT_EQ(value[0] == '!' ? "status " + value.substr(1) : value, valueOf(key)) << key;
        }
    }
}

TEST(Keys, FollowWhatHappensToTheSwitch)
{
    SimSwitch sim(conditions());
    sim.changePort(3, [](PortScenario& p) { p.adminState = AdminState::offline; });
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.3.OperState")) << "a failed port that is switched off";
    sim.portDown(6);
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.6.OperState"));
    EXPECT_EQ("status 2", valueOf("Oper.NameServerAll.1.Entry.010600.PortWwn")) << "left the name server";
    sim.portUp(6);
    EXPECT_EQ("210002A5c0de0006", valueOf("Oper.NameServerAll.1.Entry.010600.PortWwn"));
    sim.removeNode("210002a5C0DE0006"); // in any case
    EXPECT_EQ("GL", valueOf("Oper.UserPort.0.6.RunningType"));
    EXPECT_EQ("8Gb/s", valueOf("Oper.UserPort.0.6.LinkSpeed")) << "the slow node is gone";

    sim.changePort(10, [](PortScenario& port) { port.link = LinkState::automatic; });
    sim.removeSwitch(2);
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.10.OperState")) << "its link is down";
    EXPECT_EQ("status 2", valueOf("Oper.Fabric.Entry.2.WWN"));

    EXPECT_THROW(sim.addIsl({1, 10, 2, 0, false}), ScenarioError);
    sim.addSwitch(SimSwitch::make().remote(2, 2).scenario().switches.back());
    EXPECT_THROW(sim.addIsl({1, 9, 2, 0, false}), ScenarioError) << "a node is there";
    sim.addIsl({1, 10, 2, 0, false});
    EXPECT_EQ("Online", valueOf("Oper.UserPort.0.10.OperState"));
    NodeScenario node;
    node.domain = 1;
    node.port = 10;
    EXPECT_THROW(sim.addNode(node), ScenarioError) << "a switch is there";
    EXPECT_THROW(sim.changePort(9, [](PortScenario& port) { port = PortScenario(); }), std::invalid_argument);
    EXPECT_EQ("F", valueOf("Oper.UserPort.0.9.RunningType")) << "refused as a whole";

    sim.changeSwitch([](SwitchScenario& one) { one.adminState = AdminState::offline; });
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.9.OperState")) << "an offline switch has no port online";
    sim.setPrincipal(0);
    EXPECT_EQ("status 5", valueOf("Oper.Switch.WhoIsPrincipal"));
}

TEST(Batch, AnswersEachEntryForItself)
{
    const SimSwitch sim = SimSwitch::make().ports(2);
    auto entries =
        batchOf({"Oper.UserPort.0.0.AdminState", "Oper.UserPort.0.7.AdminState", "Oper.Switch.Echo.x"});
    EXPECT_EQ(0, getBatch(entries));
    EXPECT_STREQ("Online", entries[0].value);
    EXPECT_EQ(XPL_UNKNOWN_KEY, entries[1].status);
    EXPECT_STREQ("", entries[1].value);
    EXPECT_STREQ("x", entries[2].value);
    EXPECT_TRUE(isErrors(entries.data(), 3));
    EXPECT_FALSE(isErrors(entries.data(), 1));
    entries[1].status = XPL_NOT_AVAILABLE;
    EXPECT_FALSE(isErrors(entries.data(), 3)) << "a value that is missing is not an error";
}

TEST(Batch, RefusesWhatItCannotRead)
{
    const SimSwitch sim = SimSwitch::make();
    auto entries = batchOf({"Oper.Switch.WWN"});
    EXPECT_EQ(XPL_INVALID_HANDLE, xpl_smlGetBatch(nullptr, entries.data(), 1));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_smlGetBatch(hSwitch, nullptr, 1));
    EXPECT_EQ(XPL_OK, xpl_smlGetBatch(hSwitch, nullptr, 0));
    EXPECT_EQ(XPL_OK, xpl_smlBatchSet(hSwitch, nullptr, 0));
    EXPECT_EQ(XPL_OK, xpl_smlBatchCimSet(hSwitch, nullptr, 0));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_smlBatchCimSet(hSwitch, nullptr, 1));
    std::memset(entries[0].key, 'x', sizeof entries[0].key);
    EXPECT_EQ(XPL_INVALID_PARAMETER, getBatch(entries)) << "a key without an end";
    EXPECT_EQ("status 9", valueOf("Oper.Switch.Echo." + std::string(300, 'x'))) << "a key that does not fit";
    EXPECT_EQ(std::string(238, 'x'), valueOf("Oper.Switch.Echo." + std::string(238, 'x')));
}

TEST(Writes, ChangeTheConfigurationAndWhatFollows)
{
    const SimSwitch sim(conditions());
    struct
    {
        const char* write;
        int status;
        const char* key;
        const char* value;
    } const rows[] = {
        {"Config.UserPort.0.9.LinkSpeed.2Gb/s", 0, "Config.UserPort.0.9.LinkSpeed", "2Gb/s"},
        // Beyond its optics.
        {"Config.UserPort.0.9.LinkSpeed.10Gb/s", 9, "Oper.UserPort.0.9.LinkSpeed", "2Gb/s"},
        {"Config.UserPort.0.9.LinkSpeed.ERROR", 9, "Config.UserPort.0.9.LinkSpeed", "2Gb/s"},
        {"Config.UserPort.0.9.LinkSpeed.Auto", 0, "Oper.UserPort.0.9.LinkSpeed", "8Gb/s"},
        {"Config.UserPort.0.9.Type.TF", 0, "Oper.UserPort.0.9.RunningType", "TF"},
        {"Config.UserPort.0.9.Type.X", 9, "Config.UserPort.0.9.Type", "TF"},
        {"Config.UserPort.0.9.RSCNEnable.False", 0, "Oper.UserPort.0.9.IOStreamGuardMode", "Enabled"},
        {"Config.UserPort.0.9.RSCNEnable.True", 0, "Oper.UserPort.0.9.IOStreamGuardMode", "Disabled"},
        {"Config.UserPort.0.9.AutoPerfTuning.False", 0, "Oper.UserPort.0.9.PerfTuningMode", "Normal"},
        {"Config.UserPort.0.9.VIEnable.True", 0, "Oper.UserPort.0.9.PerfTuningMode", "VI"},
        {"Config.UserPort.0.9.LCFEnable.True", 0, "Oper.UserPort.0.9.PerfTuningMode", "LCF-VI"},
        {"Config.UserPort.0.9.MFSEnable.True", 0, "Oper.UserPort.0.9.PerfTuningMode", "MFS"},
        {"Config.UserPort.0.9.MFSEnable.maybe", 9, "Config.UserPort.0.9.MFSEnable", "True"},
        {"Config.UserPort.0.9.ScanEnable.False", 0, "Config.UserPort.0.9.ScanEnable", "False"},
        {"Config.UserPort.0.99.ScanEnable.False", 2, "Config.UserPort.0.9.ScanEnable", "False"},
        {"Config.UserPort.0.9.ScanEnable", 2, "Config.UserPort.0.9.ScanEnable", "False"},
        {"Oper.UserPort.0.9.OperState.Online", 2, "Oper.UserPort.0.9.OperState", "Online"},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.status, setKey(row.write)) << row.write;
        EXPECT_EQ(row.value, valueOf(row.key)) << "after " << row.write;
    }
}

TEST(Writes, OfTheCimAgentAreKeptFromThoseOfTheSwitch)
{
    const SimSwitch sim = SimSwitch::make().ports(1);
    auto entries = batchOf({"Cmd.Cim.Listener.l1.Create", "Config.UserPort.0.0.ScanEnable.False"});
    EXPECT_EQ(0, xpl_smlBatchCimSet(hSwitch, entries.data(), 2));
    EXPECT_EQ(XPL_OK, entries[0].status);
    EXPECT_EQ(XPL_UNKNOWN_KEY, entries[1].status);
    EXPECT_STREQ("", entries[1].value);
    EXPECT_EQ("True", valueOf("Config.UserPort.0.0.ScanEnable"));
    EXPECT_EQ(0, xpl_smlBatchSet(hSwitch, entries.data(), 2));
    EXPECT_EQ(XPL_UNKNOWN_KEY, entries[0].status);
    EXPECT_EQ("False", valueOf("Config.UserPort.0.0.ScanEnable"));
    EXPECT_EQ(XPL_UNKNOWN_KEY, setKey("Cmd.Cim.Listener.l1.Create"));
}

} // namespace
