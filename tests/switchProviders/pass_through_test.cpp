// Tests of what clients do with the pass-through map of a transparent switch: entries created and deleted,
// what is sent to the switch for it, and what remains of a change that fails.
#include "common/map_access.h"
#include "switchProviders/VRAX_PassThroughMapEntry_Provider.h"
#include "switchaccess/Admin_Mode.h"
#include "switchaccess/tf_port_list.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/requests.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <set>
#include <sstream>

namespace cimple
{
namespace
{

using simulator::PortScenario;
using simulator::PortType;

typedef std::vector<std::string> Texts;
typedef VRAX_PassThroughMapEntry Entry;
typedef VRAX_PassThroughMapEntry_Provider Provider;

// --- Lists

TEST(TFPortList, IsReadNumberByNumber)
{
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"3,7,12", {3, 7, 12}},
        {",3,,7,", {3, 7}},
        {"", {}},
        {" 3, 7x,x", {3, 7, 0}},
        {"010,-1", {10, -1}},
        {"99999999999,-99999999999", {2147483647, -2147483647 - 1}},
    };
    for (const auto& [text, ports] : rows)
        EXPECT_EQ(getTFPortList(text), ports) << text;
    const Log_Capture log(kLogInfo);
    getTFPortList("3,12");
    EXPECT_EQ(log.take().back(), (Log_Capture::Line{kLogInfo, "TFPortList[1] = 12"}));
}

TEST(TFPortList, IsWrittenWithoutAPort)
{
    EXPECT_EQ(deleteFromTFPortList({3, 7, 12}, 3), "7,12");
    EXPECT_EQ(deleteFromTFPortList({3, 7, 12}, 12), "3,7");
    EXPECT_EQ(deleteFromTFPortList({3, 7, 12}, 1), "3,7,12");
    EXPECT_EQ(deleteFromTFPortList({7, 3, 7}, 7), "3");
    EXPECT_EQ(deleteFromTFPortList({3}, 3), "None");
    EXPECT_TRUE(isNoTFPort("None") && isNoTFPort("") && !isNoTFPort("0"));
}

// --- Changes

enum What
{
    CREATE,
    DELETE
};

constexpr unsigned kRemote = 100; // the port of another switch, which bears the number 3
constexpr unsigned kNode = 101;   // a node port
constexpr unsigned kNobody = 102; // no reference

// Ports 0 and 1 are of type TH and 2 to 4 of type TF; port 0 forwards to 2, and in its place to 2 and 3.
class PassThrough : public Switch_Test
{
  protected:
    void SetUp() override { start(true); }

    void start(bool transparent)
    {
        simulator::SimSwitchSetup setup = simulator::SimSwitch::make().ports(6);
        for (int number = 0; number < 5; ++number)
            setup.port(number,
                       [=](PortScenario& port) { port.type = number < 2 ? PortType::th : PortType::tf; });
        const auto forwards = [](PortScenario& port)
        {
            port.primaryTfPorts = {2};
            port.backupTfPorts = {2, 3};
        };
        const auto facts = [=](simulator::SwitchScenario& one) { one.transparent = transparent; };
        sim.open(setup.port(0, forwards)
                     .remote(2, 4)
                     .node(1, 5, "2100026e1a40b7c1")
                     .switchFacts(facts)
                     .scenario());
        makeMapsStale();
        before = entries();
        sim.mark();
    }

    static VRAX_FCPort* port(unsigned number)
    {
        if (number == kNobody)
            return nullptr;
        char device[34];
        std::snprintf(device, sizeof(device), "100002a5c0de0001:2%03x02a5c0de0001", number);
        VRAX_FCPort* keys = VRAX_FCPort::create();
        keys->SystemCreationClassName.set(number == kNode ? "VRAX_Fabric" : "VRAX_FCSwitch");
        keys->SystemName.set(number == kRemote ? "100002a5c0de1002" : "100002a5c0de0001");
        keys->CreationClassName.set("VRAX_FCPort");
        keys->DeviceID.set(number == kNode     ? "2100026E1A40B7C1"
                           : number == kRemote ? "100002a5c0de1002:200302a5c0de1002"
                                               : device);
        return keys;
    }
    static Owned<Entry> entry(unsigned host, unsigned fabricPort, bool isPrimary)
    {
        Owned<Entry> keys = makeNull<Entry>();
        keys->Antecedent = port(host);
        keys->Dependent = port(fabricPort);
        keys->PrimaryMapping.set(isPrimary);
        return keys;
    }
    static int change(What what, Entry* entry)
    {
        return what == CREATE ? int{Provider().create_instance(entry)}
                              : int{Provider().delete_instance(entry)};
    }

    static std::string nameOf(unsigned long long host, unsigned long long fabricPort, bool isPrimary)
    {
        return std::to_string(host) + "-" + std::to_string(fabricPort) + (isPrimary ? " primary" : " backup");
    }
    // As they are published.
    Texts entries()
    {
        Texts all;
        const Served served = serve<Provider>(
            [&all](const Entry& one)
            {
                all.push_back(nameOf(one.Antecedent->PortNumber.value,
                                     one.Dependent->PortNumber.value,
                                     one.PrimaryMapping.value));
            });
        EXPECT_EQ(served.status, 0);
        std::sort(all.begin(), all.end());
        return all;
    }

    // The writes, without what the commands have in common.
    std::string writes() const
    {
        std::string all;
        for (const std::string& write : sim.writes())
            all += " " + write.substr(write.rfind("Cmd.Switch.", 0) == 0 ? 11 : 0);
        return all.substr(all.empty() ? 0 : 1);
    }

    Texts before;
};

const std::string kPrimary1 = "Config.UserPort.0.1.PrimaryTFPortMap.";
const std::string kPrimary0 = "Config.UserPort.0.0.PrimaryTFPortMap.";
const std::string kBackup0 = "Config.UserPort.0.0.BackupTFPortMap.";

std::string whole(const std::string& write)
{
    return "ReqAdmin EditConfig.sum " + write + " SaveConfig.sum ActConfig RelAdmin";
}

TEST_F(PassThrough, EntriesAreCreatedAndDeleted)
{
    EXPECT_EQ(before, (Texts{"0-2 backup", "0-2 primary", "0-3 backup"}));
    const struct
    {
        What what;
        unsigned host, fabricPort;
        bool isPrimary;
        std::string write;
    } rows[] = {
        {CREATE, 1, 4, true, kPrimary1 + "4"},
        {CREATE, 0, 4, true, kPrimary0 + "2,4"},
        {CREATE, 0, 3, true, kPrimary0 + "2,3"},
        {CREATE, 0, 4, false, kBackup0 + "2,3,4"},
        {DELETE, 0, 2, true, kPrimary0 + "None"},
        {DELETE, 0, 2, false, kBackup0 + "3"},
        {DELETE, 0, 3, false, kBackup0 + "2"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.write);
        SetUp();
        const Owned<Entry> one = entry(row.host, row.fabricPort, row.isPrimary);
        EXPECT_EQ(change(row.what, one.get()), 0);
        EXPECT_EQ(writes(), whole(row.write));
        EXPECT_EQ(sim.adminModeHolder(), "");

        Texts expected = before;
        const std::string name = nameOf(row.host, row.fabricPort, row.isPrimary);
        if (row.what == CREATE)
            expected.push_back(name);
        else
            expected.erase(std::find(expected.begin(), expected.end(), name));
        std::sort(expected.begin(), expected.end());
        sim.mark();
        EXPECT_EQ(entries(), expected);
        Entry* found = nullptr;
        EXPECT_EQ(Provider().get_instance(one.get(), found),
                  row.what == CREATE ? GET_INSTANCE_OK : GET_INSTANCE_NOT_FOUND);
        const Owned<Entry> owner(found);
        EXPECT_EQ(sim.platformCalls(), 0u) << "the map shows the change at once";
        makeMapsStale();
        EXPECT_EQ(entries(), expected) << "and so does the switch";
    }
}

TEST_F(PassThrough, ARequestIsLogged)
{
    const Owned<Entry> one = entry(0, 3, true);
    const Log_Capture log(kLogInfo);
    EXPECT_EQ(change(CREATE, one.get()), 0);
    Texts lines = log.texts();
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(lines[1].rfind("Antecedent = 0x", 0), 0u);
    EXPECT_EQ(lines[2].rfind("Dependent = 0x", 0), 0u);
    lines.erase(lines.begin() + 1, lines.begin() + 3);
    EXPECT_EQ(lines,
              (Texts{"instance->PrimaryMapping = 1",
                     "ant_portNumber = 0",
                     "dep_portNumber = 3",
                     "portType =TH",
                     "portType =TF",
                     "*primaryTFPortMap=2",
                     "TFPortList[] = 2"}));
}

// What a client leaves out is told it back.
TEST_F(PassThrough, WithoutPrimaryMappingItIsABackup)
{
    const Owned<Entry> one = entry(0, 4, true);
    one->PrimaryMapping.clear();
    EXPECT_EQ(change(CREATE, one.get()), 0);
    EXPECT_EQ(writes(), whole(kBackup0 + "2,3,4"));
    EXPECT_TRUE(!one->PrimaryMapping.null && !one->PrimaryMapping.value);
}

TEST_F(PassThrough, WhatIsRefusedChangesNothing)
{
    for (const Cells& row : readRequests(PASS_THROUGH, 4, kLocalWwn))
    {
        SCOPED_TRACE(row[0] + ", " + row[1]);
        unsigned host = 0, fabricPort = 0;
        const What what = row[0][0] == 'c' ? CREATE : DELETE;
        ASSERT_EQ(std::sscanf(row[0].c_str() + std::strlen("create "), "%u-%u", &host, &fabricPort), 2);
        std::istringstream words(row[1]);
        const std::set<std::string> failing{std::istream_iterator<std::string>(words), {}};
        const auto fails = [&failing](const char* one) { return failing.count(one) != 0; };
        start(!fails("plain"));
        for (const std::string& one : failing)
            if (one == "held")
                sim.holdAdminMode("console");
            else if (one == "load")
            {
                makeMapStale("VRAX_FCPort");
                sim.failNext("DataCache::dcRdLock", 1, XPL_UNREACHABLE, 1);
            }
            else if (one != "plain" && one != "null")
                sim.failNext(one);
        const Owned<Entry> one = entry(host, fabricPort, row[0].find("primary") != std::string::npos);
        const Log_Capture log(kLogInfo);
        const bool noLocks = fails("DataCache::dcRdLock");
        const int status = what == CREATE ? (noLocks ? 84 : 81) : noLocks ? 93 : 91;
        EXPECT_EQ(change(what, fails("null") ? nullptr : one.get()), status);
        std::string logged;
        for (const auto& [level, line] : log.take())
        {
            const bool isCritical = level == kLogCritical;
            if (line.find(isCritical ? ":load[" : "=") != line.npos)
                continue; // what the ports' load says, and what a request traces
            const std::string form = line.compare(0, 5, "CRIT:") == 0 ? "CRIT:" : "CRIT ";
            logged +=
                (logged.empty() ? "" : "|") + (isCritical ? form + line.substr(line.find("] ") + 2) : line);
        }
        EXPECT_EQ(logged, row[2]);
        EXPECT_EQ(writes(), row[3]);
        const bool stuck = fails("Cmd.Switch.RelAdmin");
        EXPECT_EQ(sim.adminModeHolder(), fails("held") ? "console" : stuck ? "admin command" : "");
        sim.restore();
        Admin_Mode::giveBackLeftBehind(); // as whoever asks for it next does
        EXPECT_EQ(sim.adminModeHolder(), fails("held") ? "console" : "");
        makeMapsStale();
        EXPECT_EQ(entries(), before);
        EXPECT_EQ(sim.heldCacheLocks(), 0);
    }
}

// The list is in force when the mode cannot be left: the client is told of a failure, and sees the list.
TEST_F(PassThrough, AFailureToLeaveTheModeIsOne)
{
    sim.failNext("Cmd.Switch.RelAdmin");
    const Owned<Entry> one = entry(0, 4, true);
    EXPECT_EQ(change(CREATE, one.get()), 81);
    EXPECT_EQ(writes(), whole(kPrimary0 + "2,4") + " CancelConfig RelAdmin");
    EXPECT_EQ(sim.adminModeHolder(), "") << "the second attempt";
    EXPECT_EQ(entries(), (Texts{"0-2 backup", "0-2 primary", "0-3 backup", "0-4 primary"}));
}

// A list that was changed on the switch meanwhile is not overwritten with what the map knows.
TEST_F(PassThrough, TheSwitchKnowsBest)
{
    sim.changePort(0, [](PortScenario& port) { port.primaryTfPorts = {3, 4}; });
    const Owned<Entry> known = entry(0, 2, true);
    EXPECT_EQ(change(DELETE, known.get()), 91);
    EXPECT_EQ(entries(), (Texts{"0-2 backup", "0-3 backup", "0-3 primary", "0-4 primary"}))
        << "a refused request is followed by a load";
    sim.changePort(0, [](PortScenario& port) { port.primaryTfPorts = {2}; });
    const Owned<Entry> unknown = entry(0, 3, true);
    EXPECT_EQ(change(CREATE, unknown.get()), 0);
    EXPECT_EQ(sim.port(0).primaryTfPorts, (std::vector<std::uint16_t>{2, 3}));
}

// From the first check to the last command.
TEST_F(PassThrough, AllLocksAreHeldThroughout)
{
    int calls = 0;
    const auto check = [this, &calls]
    {
        ++calls;
        EXPECT_GT(sim.heldCacheLocks(), 0);
        // Within the writer's thread another attempt fails at once.
        EXPECT_FALSE(MapWrLock(Provider::kIndex).obtained());
        EXPECT_FALSE(MapWrLock(VRAX_FCPort_Provider::kIndex).obtained());
    };
    for (const char* call : {"DataCache::isTransparentSwitch", "xpl_smlGetV", "xpl_smlSetV"})
        sim.onCall(call, check);
    for (const What what : {CREATE, DELETE})
        EXPECT_EQ(change(what, entry(1, 4, true).get()), 0);
    EXPECT_EQ(calls, 2 * (1 + 3 + 6));
}

} // namespace
} // namespace cimple
