// Tests of what can be done to the local switch.
#include "serverProviders/VRAX_FCSwitchObjectManager_Provider.h"
#include "tests/fabricProviders/three_switches.h"

#include <atomic>
#include <thread>

namespace cimple
{
namespace
{

using simulator::AdminState;
using simulator::SwitchScenario;

TEST_F(Switches, RequestStateChangeByRequestedState)
{
    const std::string critical = "CRIT:" + kOrigin + "RequestStateChange[] ";
    const std::string setting = critical + "Querying for \"xpl_swSwitchSetConfig\"";
    const std::string resetting = critical + "Querying for \"xpl_swSwitchForceReset\"";
    struct Row
    {
        std::optional<unsigned> state;
        std::optional<unsigned> value;
        std::string logged; // beside the requested state
        const char* calls;  // r: the record is read, w: written, R: the switch is reset
        AdminState after;
    };
    const Row rows[] = {
        {0, std::nullopt, "", "r", AdminState::online},
        {1, std::nullopt, "", "r", AdminState::online},
        {3, 0, setting, "rw", AdminState::offline},
        {4, 1, "State Not Supported", "", AdminState::offline},
        {5, std::nullopt, "", "r", AdminState::offline},
        {7, 0, setting, "rw", AdminState::diagnostics},
        {6, 1, "State Not Supported", "", AdminState::diagnostics},
        {2, 0, setting, "rw", AdminState::online},
        {8, 1, "State Not Supported", "", AdminState::online},
        {9, 1, "State Not Supported", "", AdminState::online},
        {10, 1, "State Not Supported", "", AdminState::online},
        {11, 0, resetting, "R", AdminState::online},
        {12, std::nullopt, "", "r", AdminState::online},
        {65535, std::nullopt, "", "r", AdminState::online},
        {std::nullopt, std::nullopt, "", "r", AdminState::online},
    };
    for (const Row& row : rows)
    {
        const unsigned state = row.state.value_or(0);
        const std::vector<std::uint8_t> unknown = sim.localSwitch().reserved;
        sim.mark();
        const Log_Capture log(kLogInfo);
        const Outcome outcome = request(row.state);
        EXPECT_EQ(outcome.status, 0) << state;
        EXPECT_EQ(outcome.value, row.value) << state;

        std::vector<std::string> expected = {
            kOrigin + "RequestStateChange[] RequestedState = " + std::to_string(state)};
        if (!row.logged.empty())
            expected.push_back(row.logged);
        EXPECT_EQ(log.texts(), expected) << state;

        std::string calls(sim.calls("xpl_swSwitchGetConfig"), 'r');
        calls.append(sim.calls("xpl_swSwitchSetConfig"), 'w');
        calls.append(sim.calls("xpl_swSwitchForceReset"), 'R');
        EXPECT_EQ(calls, row.calls) << state;
        EXPECT_EQ(sim.platformCalls(), calls.size()) << state;
        EXPECT_EQ(sim.localSwitch().adminState, row.after) << state;
        EXPECT_EQ(sim.localSwitch().reserved, unknown) << state;
    }
}

TEST_F(Switches, RequestStateChangeActsOnTheLocalSwitchAndShowsWithTheNextLoad)
{
    const Log_Capture log; // keeps the line of the attempt off standard error
    EXPECT_EQ(local()["EnabledState"], "2");
    EXPECT_EQ(request(3, kRemoteName).value, 0u);
    EXPECT_EQ(local()["EnabledState"], "2") << "the map is still fresh";
    EXPECT_EQ(reloadedLocal()["EnabledState"], "3");
    EXPECT_EQ(local()["OperationalStatus"], "[10]");
    EXPECT_EQ(published(2)["EnabledState"], "5");
}

TEST_F(Switches, FailuresOfRequestStateChange)
{
    const std::string critical = "CRIT:" + kOrigin + "RequestStateChange[] ";
    struct Row
    {
        unsigned state;
        const char* failing;
        std::optional<unsigned> value;
        std::vector<std::string> logged;
    };
    const std::vector<std::string> unread = {critical + "GetConfig Failed with error 20"};
    const std::vector<std::string> unwritten = {critical + "Querying for \"xpl_swSwitchSetConfig\"",
                                                critical + "SetConfig Failed with error 20"};
    const Row rows[] = {
        {2, "xpl_swSwitchGetConfig", std::nullopt, unread},
        {3, "xpl_swSwitchGetConfig", std::nullopt, unread},
        {7, "xpl_swSwitchGetConfig", std::nullopt, unread},
        {5, "xpl_swSwitchGetConfig", std::nullopt, unread},
        {2, "xpl_swSwitchSetConfig", 5, unwritten},
        {3, "xpl_swSwitchSetConfig", 5, unwritten},
        {7, "xpl_swSwitchSetConfig", 5, unwritten},
        {11,
         "xpl_swSwitchForceReset",
         5,
         {critical + "Querying for \"xpl_swSwitchForceReset\"", critical + "Switch Reset failed"}},
    };
    for (const Row& row : rows)
    {
        sim.failNext(row.failing, 1, XPL_INVALID_HANDLE);
        const Log_Capture log;
        const Outcome outcome = request(row.state);
        EXPECT_EQ(outcome.status, 130) << row.state << ", " << row.failing;
        EXPECT_EQ(outcome.value, row.value) << row.state << ", " << row.failing;
        EXPECT_EQ(log.texts(), row.logged) << row.state << ", " << row.failing;
        EXPECT_EQ(sim.localSwitch().adminState, AdminState::online) << row.state << ", " << row.failing;
    }
}

TEST_F(Switches, RenameTheLocalSwitch)
{
    const std::string longest(32, 'n');
    for (const std::string& name : {std::string("core-b"), longest, std::string("")})
    {
        local();
        const SwitchScenario before = sim.localSwitch();
        sim.mark();
        EXPECT_EQ(rename(kLocalName, name.c_str()), 0) << name;
        EXPECT_EQ(sim.calls("xpl_swSwitchSetConfig"), 1u) << name;
        SwitchScenario after = sim.localSwitch();
        EXPECT_EQ(after.name, name);
        EXPECT_EQ(after.reserved, before.reserved) << "bytes that mean nothing here";
        EXPECT_EQ(after.configuredAdminState, before.configuredAdminState);
        EXPECT_EQ(after.principalPriority, before.principalPriority);

        sim.mark();
        Description one = local();
        EXPECT_EQ(sim.platformCalls(), 0u) << "the map stays fresh";
        EXPECT_EQ(one["ElementName"], name);
        EXPECT_EQ(one["Description"], "FibreChannel Switch") << "nothing else changes";
        EXPECT_EQ(reloadedLocal()["ElementName"], name);
    }
}

TEST_F(Switches, ARenameReachesAssociationsButNoAnswerOnItsWay)
{
    const auto nameSeenByAssociation = []
    {
        std::string name;
        serve<VRAX_FCSwitchObjectManager_Provider>(
            [&](const VRAX_FCSwitchObjectManager& association)
            { name = association.Antecedent->ElementName.value.c_str(); });
        return name;
    };
    // The local switch first, so that it is the one associated.
    sim.open(simulator::SimSwitch::make().wwn(kLocalWwn).scenario());
    clock.outlive();
    EXPECT_EQ(nameSeenByAssociation(), "sim-switch");
    Ref<VRAX_FCSwitch> held;
    serve<VRAX_FCSwitch_Provider>([&](const VRAX_FCSwitch& one)
                                  { held.reset(const_cast<VRAX_FCSwitch*>(&one)); });
    EXPECT_EQ(rename(kLocalName, "renamed"), 0);
    EXPECT_STREQ(held->ElementName.value.c_str(), "sim-switch");
    EXPECT_EQ(nameSeenByAssociation(), "renamed");
}

TEST_F(Switches, RefusedRenamesWriteNothing)
{
    const std::string critical = "CRIT:" + kOrigin + "modify_instance[] ";
    const std::string tooLong(33, 'n');
    const std::string huge(100000, 'n');
    const std::string longer = critical + "ElementName is longer than the 32 characters of a switch's name";
    struct Row
    {
        const char* switchName;
        const char* elementName;
        const char* failing; // a call that fails, or none
        int status;
        std::string logged;
    };
    const Row rows[] = {
        {kRemoteName, "new", "", 102, ""},
        {"", "new", "", 102, ""},
        // Any letter case names the local switch, but the map is searched for the exact key.
        {kLocalWwn, "new", "", 100, critical + "Required instance not found in the map"},
        {kLocalName, nullptr, "", 0, ""},
        {kLocalName,
         "new",
         "get_Local_Switch_World_Wide_Name",
         100,
         critical + "Unable to retrieve localWWN"},
        {kLocalName, "new", "xpl_swSwitchGetConfig", 100, critical + "xpl_swSwitchGetConfig Failed"},
        {kLocalName, "new", "xpl_swSwitchSetConfig", 100, critical + "xpl_swSwitchSetConfig Failed"},
        {kLocalName, tooLong.c_str(), "", 100, longer},
        {kLocalName, huge.c_str(), "", 100, longer},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(local()["ElementName"], "sim-switch");
        sim.mark();
        if (*row.failing != '\0')
            sim.failNext(row.failing);
        const Log_Capture log;
        EXPECT_EQ(rename(row.switchName, row.elementName), row.status) << row.logged;
        EXPECT_EQ(log.texts(),
                  row.logged.empty() ? std::vector<std::string>() : std::vector<std::string>{row.logged});
        EXPECT_EQ(sim.calls("xpl_swSwitchSetConfig"), row.logged.find("SetConfig") != std::string::npos)
            << row.logged;
        EXPECT_EQ(sim.localSwitch().name, "sim-switch") << row.logged;
        EXPECT_EQ(sim.outstandingBlocks(), 0u) << row.logged;
        EXPECT_EQ(local()["ElementName"], "sim-switch") << row.logged;
    }
}

TEST_F(Switches, KeepTheMapLockedWhileTheSwitchIsChanged)
{
    typedef std::vector<std::string> Texts;
    local();
    Texts held;
    noteCallsUnderLock(VRAX_FCSwitch_Provider::kIndex,
                       {"get_Local_Switch_World_Wide_Name",
                        "xpl_swSwitchGetConfig",
                        "xpl_swSwitchSetConfig",
                        "xpl_swSwitchForceReset"},
                       held);
    const Log_Capture log; // keeps the lines of the attempts off standard error
    rename(kLocalName, "renamed");
    EXPECT_EQ(held,
              (Texts{"get_Local_Switch_World_Wide_Name", "xpl_swSwitchGetConfig", "xpl_swSwitchSetConfig"}));
    held.clear();
    request(3);
    request(11);
    EXPECT_EQ(held, (Texts{"xpl_swSwitchGetConfig", "xpl_swSwitchSetConfig", "xpl_swSwitchForceReset"}));
}

TEST_F(Switches, FindFaultByName)
{
    struct Row
    {
        const char* name;
        unsigned code;
    };
    const Row rows[] = {
        {"HW_MP_ACCESS_CPU0", 32769},
        {"HW_MP_ACCESS_CPU1", 32769},
        {"HW_MP_DATA_MISMATCH", 32769},
        {"HW_MP_ACCESS", 32769},
        {"FW_POST_FAIL", 32768},
        {"hw_mp_access", 0},
        {"HW_MP_ACCESS_CPU2", 0},
        {"HW_MP", 0},
        {"", 0},
    };
    for (const Row& row : rows)
        EXPECT_EQ(VRAX_FCSwitch_Provider::findFault(row.name), row.code) << row.name;
}

// Readers, reloads, renames and state changes at the same time: every answer is whole and has one of the
// names.
TEST_F(Switches, ServeWholeAnswersWhileTheyAreChanged)
{
    sim.recordKeys(false);
    instances<VRAX_FCSwitch_Provider>();
    const Log_Capture log; // keeps the lines of state changes off standard error
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i)
    {
        threads.emplace_back(
            [&, i]
            {
                for (int round = 0; round < 40; ++round)
                {
                    if (i == 0)
                        clock.outlive();
                    if (i == 1)
                        wrong += rename(kLocalName, round % 2 == 0 ? "even" : "odd") != 0;
                    if (i == 2)
                        wrong += request(round % 2 == 0 ? 3 : 2).value != 0u;
                    int named = 0;
                    const Served switches = serve<VRAX_FCSwitch_Provider>(
                        [&](const VRAX_FCSwitch& one)
                        {
                            const String& name = one.ElementName.value;
                            named += name == "even" || name == "odd" || name == "sim-switch";
                        });
                    wrong += switches.status != 0 || switches.count != 3 || named != 1;
                    wrong += serve<VRAX_FCSwitchObjectManager_Provider>().count != 1;
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(reloadedLocal()["ElementName"], "odd");
}

} // namespace
} // namespace cimple
