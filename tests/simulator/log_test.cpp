// Tests of the switch's logs: their keys, their commands, and what writes to them.
#include "platform/xpl_fzs.h"
#include "simulator/model/EventLog.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <regex>

using namespace simulator;

namespace
{

typedef std::vector<std::string> Texts;

const std::string kFirst = "[7][Tue Mar 04 10:22:31.123456 UTC 2008][port][port 3 Downed]";
const std::string kSecond = "[9][Tue Mar 04 10:22:31.123456 UTC 2008][port][port 3 Online]";

SimSwitchSetup logs(int capacity = 1000)
{
    return SimSwitch::make()
        .supplies(2)
        .blades(2, 2)
        .temperature("Intake", 30)
        .voltage("5 V", 5)
        .node(1, 2, "210002a5c0de0009")
        .switchFacts(
            [capacity](SwitchScenario& facts)
            {
                facts.logCapacity = capacity;
                facts.userLog = {kFirst, kSecond};
                facts.alarmLog = {kFirst};
            });
}

std::string status(int code)
{
    return "status " + std::to_string(code);
}

int command(const std::string& name)
{
    std::int32_t error = 0;
    return xpl_smlSetV(hSwitch, &error, "Cmd.Switch.%s", name.c_str());
}

// The entries of a log in the order of the walk.
Texts walk(const std::string& log)
{
    Texts entries;
    for (int number = 0; entries.size() < 100;)
    {
        const std::string entry = valueOf("Oper.Switch.Next" + log + "Entry." + std::to_string(number));
        if (entry == status(XPL_FZS_NO_MORE))
            break;
        entries.push_back(entry);
        number = std::atoi(entry.c_str() + 1);
    }
    return entries;
}

// The numbers and what follows the time of the entries behind the first `skipped`.
Texts events(const std::string& log, std::size_t skipped)
{
    Texts entries = walk(log);
    entries.erase(entries.begin(),
                  entries.begin() + static_cast<std::ptrdiff_t>(std::min(skipped, entries.size())));
    for (std::string& entry : entries)
        entry.erase(entry.find(']') + 1, entry.find("][", entry.find("][") + 1) - entry.find(']'));
    return entries;
}

TEST(Logs, TellTheirEntriesByNumber)
{
    const SimSwitch sim(logs());
    const std::pair<const char*, std::string> rows[] = {
        {"LastLogEntry", kSecond},
        {"LastLogEntry.", kSecond},
        {"LastLogEntry.%d", kSecond},
        {"LastLogEntry.7.more", kSecond},
        {"NextLogEntry.0", kFirst},
        {"NextLogEntry.6", kFirst},
        {"NextLogEntry.7", kSecond},
        {"NextLogEntry.8", kSecond},
        {"NextLogEntry.9", status(XPL_FZS_NO_MORE)},
        {"NextLogEntry.2147483647", status(XPL_FZS_NO_MORE)},
        {"NextLogEntry.-1", status(XPL_UNKNOWN_KEY)},
        {"NextLogEntry.", status(XPL_UNKNOWN_KEY)},
        {"LastAlarmEntry.%d", kFirst},
        {"NextAlarmEntry.0", kFirst},
        {"NextAlarmEntry.7", status(XPL_FZS_NO_MORE)},
        {"LogEnabled", "True"},
        {"MaxLogEntries", "1000"},
        {"NumLogEntries", "2"},
        {"NumAlarmEntries", "1"},
    };
    for (const auto& [key, value] : rows)
        EXPECT_EQ(value, valueOf(std::string("Oper.Switch.") + key)) << key;
}

TEST(Logs, CommandsNeedTheAdministrativeMode)
{
    SimSwitch sim(logs());
    const char* const commands[] = {"ClearSysLog",
                                    "ClearAlarmLog",
                                    "SysLogComp.All",
                                    "SysLogLevel.Warn",
                                    "StartSysLog",
                                    "StopSysLog",
                                    "RelAdmin"};
    for (const char* one : commands)
        EXPECT_EQ(XPL_INVALID_PARAMETER, command(one)) << one;
    sim.holdAdminMode("console");
    EXPECT_EQ(XPL_FZS_LOCKED, command("ReqAdmin"));
    for (const char* one : commands)
        EXPECT_EQ(XPL_FZS_LOCKED, command(one)) << one;
    EXPECT_EQ("console", sim.adminModeHolder());
    EXPECT_EQ(3u, walk("Log").size() + walk("Alarm").size());
    sim.releaseAdminMode();

    EXPECT_EQ(XPL_OK, command("ReqAdmin"));
    EXPECT_EQ(XPL_FZS_LOCKED, command("ReqAdmin")) << "also for the one who has it";
    EXPECT_EQ("admin command", sim.adminModeHolder());
    EXPECT_EQ(XPL_FZS_LOCKED, xpl_fzsDeactivateZoneset(hSwitch)) << "zoning has the same mode";
    EXPECT_EQ(XPL_OK, command("StopSysLog"));
    EXPECT_EQ("False", valueOf("Oper.Switch.LogEnabled"));
    sim.failPort(1);
    EXPECT_EQ((Texts{kFirst, kSecond}), walk("Log")) << "a log that is off takes no entry";
    EXPECT_EQ((Texts{"[8][port][port 1 Downed]"}), events("Alarm", 1)) << "the alarm log is never off";
    for (const char* one : {"SysLogComp.All", "SysLogLevel.Warn", "StartSysLog", "ClearSysLog"})
        EXPECT_EQ(XPL_OK, command(one)) << one;
    EXPECT_EQ("True", valueOf("Oper.Switch.LogEnabled"));
    EXPECT_EQ(status(XPL_FZS_NO_MORE), valueOf("Oper.Switch.LastLogEntry.%d"));
    EXPECT_EQ(2u, walk("Alarm").size());
    EXPECT_EQ(XPL_OK, command("ClearAlarmLog"));
    EXPECT_EQ(XPL_OK, command("RelAdmin"));
    EXPECT_EQ("", sim.adminModeHolder());
    EXPECT_EQ(Texts(), walk("Alarm"));
    sim.portDown(2);
    EXPECT_EQ((Texts{"[10][port][port 2 Offline]"}), events("Log", 0)) << "numbers go on";
}

TEST(Logs, EachEventWritesItsEntry)
{
    const std::string config = "config][written: ";
    const std::vector<std::tuple<std::function<void(SimSwitch&)>, Texts, Texts>> rows = {
        {[](SimSwitch& sim) { sim.portDown(3); }, {"port][port 3 Offline"}, {}},
        {[](SimSwitch& sim) { sim.failPort(3); }, {"port][port 3 Downed"}, {"port][port 3 Downed"}},
        {[](SimSwitch& sim) { sim.portUp(3); }, {}, {}}, // it was
        {[](SimSwitch& sim) { sim.failSupply(2); },
         {"chassis][power supply 2 Failed"},
         {"chassis][power supply 2 Failed"}},
        {[](SimSwitch& sim) { sim.pullSupply(2); }, {"chassis][power supply 2 NotInstalled"}, {}},
        {[](SimSwitch& sim) { sim.failBlade(2); },
         {"chassis][blade 2 Downed", "port][port 2 Downed", "port][port 3 Downed"},
         {"chassis][blade 2 Downed", "port][port 2 Downed", "port][port 3 Downed"}},
        {[](SimSwitch& sim) { sim.pullBlade(1); },
         {"chassis][blade 1 removed", "port][port 0 Offline", "port][port 1 Offline"},
         {}},
        {[](SimSwitch& sim)
         {
             NodeScenario node;
             node.domain = 1;
             node.port = 3;
             for (const char* wwn : {"210002a5c0de0001", "210002a5c0de0002"})
             {
                 node.portWwn = wwn;
                 sim.addNode(node);
             }
             sim.removeNode("210002a5c0de0001");
             sim.portDown(3);
             sim.portUp(3);
         },
         {"login][port 3: node 010300 logged in",
          "login][port 3: node 010301 logged in",
          "login][port 3: node 010300 logged out",
          "port][port 3 Offline",
          "port][port 3 Online",
          "login][port 3: node 010301 logged in"},
         {}},
        {[](SimSwitch& sim)
         {
             sim.pinTemperature(1, 54);
             sim.pinTemperature(1, 90);
             sim.pinTemperature(1, 91);
             sim.pinTemperature(1, 40);
             sim.breakSensor(SensorKind::voltage, 1);
         },
         {"chassis][temperature sensor 1 Critical: 90.00 C",
          "chassis][temperature sensor 1 Normal: 40.00 C",
          "chassis][voltage sensor 1 Unknown: no reading"},
         {"chassis][temperature sensor 1 Critical: 90.00 C",
          "chassis][voltage sensor 1 Unknown: no reading"}},
        {[](SimSwitch&)
         {
             xpl_Zone* zone = xpl_ZoneCreate("z");
             xpl_fzsCreateZone(hSwitch, zone);
             xpl_ZoneDestroy(zone);
         },
         {"zoning][database changed by cim agent"},
         {}},
        {[](SimSwitch&)
         {
             const xpl_swPortConfig record = portRecord(2);
             xpl_swPortSetConfig(hSwitch, 2, &record);
         },
         {config + "port/2"},
         {}},
        {[](SimSwitch&)
         {
             const xpl_swSwitchConfig record = switchRecord();
             xpl_swSwitchSetConfig(hSwitch, &record);
         },
         {config + "switch"},
         {}},
        {[](SimSwitch&) { setKey("Config.Switch.Location.rack [4]"); },
         {config + "Config.Switch.Location.rack (4)"},
         {}},
        {[](SimSwitch&) { setKey("Config.Switch.SNMPEnabled.Perhaps"); }, {}, {}}, // refused
    };
    for (const auto& [event, user, alarm] : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&std::get<0>(rows.front()) == &event));
        SimSwitch sim(logs());
        EXPECT_EQ((Texts{kFirst, kSecond}), walk("Log")) << "what the scenario brings about is no event";
        event(sim);
        const auto numbered = [](Texts texts, int number)
        {
            for (std::string& text : texts)
                text = "[" + std::to_string(number++) + "][" + text + "]";
            return texts;
        };
        EXPECT_EQ(numbered(user, 10), events("Log", 2));
        EXPECT_EQ(numbered(alarm, 8), events("Alarm", 1));
    }
}

TEST(Logs, EntriesHaveTheirTimeAndFitAnAttribute)
{
    SwitchLogs both(true, EventLog(100, {}, ""), EventLog(1, {}, ""));
    for (int i = 0; i < 1000; i += 50) // over all fractions of a second
        both.write(LogKind::user, "c", std::string(static_cast<std::size_t>(i), 'm'), i * std::int64_t{1000});
    const std::regex whole(R"(\[\d+\]\[\w{3} \w{3} \d\d \d\d:\d\d:\d\d\.\d{6} UTC \d{4}\]\[c\]\[m*\])");
    for (const std::string& text : both[LogKind::user].texts())
        EXPECT_TRUE(std::regex_match(text, whole)) << text;
    EXPECT_EQ(kLogEntrySize, both[LogKind::user].last()->size()) << "cut, but whole";
}

TEST(Logs, HoldSoManyEntriesAndSaveThem)
{
    SimSwitch sim(logs(3));
    for (int i = 0; i < 2; ++i)
    {
        sim.portDown(1);
        sim.portUp(1);
    }
    const Texts kept = walk("Log");
    ASSERT_EQ(3u, kept.size());
    EXPECT_EQ("[11]", kept[0].substr(0, 4));
    EXPECT_NE(kept[0].substr(4), kept[2].substr(4)) << "the same event, but not at the same time";
    EXPECT_EQ(kept.back(), valueOf("Oper.Switch.LastLogEntry.%d"));
    command("ReqAdmin");
    command("StopSysLog");
    sim.open(parseScenario(formatScenario(sim.scenario()), "saved"));
    EXPECT_EQ(kept, walk("Log"));
    EXPECT_EQ(Texts{kFirst}, walk("Alarm"));
    EXPECT_EQ("False", valueOf("Oper.Switch.LogEnabled"));
    EXPECT_EQ("3", valueOf("Oper.Switch.MaxLogEntries"));
    EXPECT_EQ("", sim.adminModeHolder());

    Scenario scenario = logs().scenario();
    const std::pair<Texts, const char*> refused[] = {
        {{kSecond, kFirst},
         "/switches/0/userLog/1: expected an entry that begins with a number in brackets above 9"},
        {{"[x]"}, "/switches/0/userLog/0: expected an entry that begins with a number in brackets above 0"},
        {{"7"}, "/switches/0/userLog/0: expected an entry that begins with a number in brackets above 0"},
        {{""}, "/switches/0/userLog/0: expected an entry that begins with a number in brackets above 0"},
        {{"[1]", "[2]", "[3]", "[4]"}, "/switches/0/userLog: the log holds 3 entries at most"},
    };
    scenario.switches[0].logCapacity = 3;
    for (const auto& [entries, message] : refused)
    {
        scenario.switches[0].userLog = entries;
        EXPECT_EQ(message, errorFrom([&] { validate(scenario); }));
    }
}

} // namespace
