// Tests of what clients do with the logs: the methods, what they return, log and send to the switch, and the
// search for a single entry.
#include "platform/xpl_fzs.h"
#include "switchProviders/VRAX_LogEntry_Provider.h"
#include "switchProviders/VRAX_RecordLog_Provider.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/requests.h"

#include <algorithm>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

const std::string kUser = "VRAX:RecordLog:" + kLocalWwn + ":User";
const std::string kAlarm = "VRAX:RecordLog:" + kLocalWwn + ":Alarm";

template <class CLASS>
Owned<CLASS> keysOf(const std::string& id)
{
    Owned<CLASS> keys = makeNull<CLASS>();
    keys->InstanceID.set(id.c_str());
    return keys;
}

std::string entry(int number, const std::string& second, const std::string& message)
{
    return "[" + std::to_string(number) + "][Tue Mar 04 10:22:" + second + ".000001 UTC 2008][" + message +
           "]";
}

class RecordLog : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make()
                     .switchFacts(
                         [](simulator::SwitchScenario& facts)
                         {
                             facts.userLog = {entry(5, "10", "a"),
                                              entry(6, "20", "b"),
                                              entry(8, "20", "b"),
                                              entry(9, "20", "d"),
                                              entry(12, "15", "c")};
                             facts.alarmLog = {entry(2, "10", "a")};
                         })
                     .scenario());
        makeMapsStale();
        instances<VRAX_RecordLog_Provider>();
        instances<VRAX_LogEntry_Provider>();
        sim.mark();
    }

    // No state: clears the log.
    static std::string call(const std::string& id, std::optional<uint16> state)
    {
        const Owned<VRAX_RecordLog> self = keysOf<VRAX_RecordLog>(id);
        Property<uint32> value;
        value.set(99);
        Property<uint16> requested;
        requested.clear();
        if (state && *state != 0)
            requested.set(*state);
        CIM_ConcreteJob* job = nullptr;
        VRAX_RecordLog_Provider provider;
        const auto status =
            state ? provider.RequestStateChange(self.get(), requested, job, Property<Datetime>(), value)
                  : provider.ClearLog(self.get(), value);
        return std::to_string(status) + " " + std::to_string(value.value);
    }

    // The commands sent, without what they have in common.
    std::string commands() const
    {
        std::string all;
        for (const std::string& write : sim.writes())
            all += (all.empty() ? "" : " ") + write.substr(std::string("Cmd.Switch.").size());
        return all;
    }
    std::string values(const std::string& property)
    {
        Texts found;
        for (const auto& log : this->instances<VRAX_RecordLog_Provider>())
            found.push_back(log.at(property));
        return joined(found);
    }
    // Whether an entry is found, and what was logged; its message when it is.
    static std::string get(const std::string& id)
    {
        VRAX_LogEntry* found = nullptr;
        const Log_Capture log(kLogInfo);
        const int status = VRAX_LogEntry_Provider().get_instance(keysOf<VRAX_LogEntry>(id).get(), found);
        const Owned<VRAX_LogEntry> owner(found);
        if (found != nullptr)
            return found->RecordID.value.c_str() + std::string(" ") + found->RecordData.value.c_str();
        return std::to_string(status) + " " + joined(log.texts());
    }
};

TEST_F(RecordLog, MethodsLeaveTheAdministrativeModeWhateverHappens)
{
    for (const Cells& row : readRequests(RECORD_LOG, 5, kLocalWwn))
    {
        SCOPED_TRACE(row[0] + ", " + row[1]);
        SetUp();
        const std::size_t blank = row[0].find(' ');
        const std::string id = row[0].substr(0, blank), method = row[0].substr(blank + 1), failing = row[1];
        if (failing == "held")
            sim.holdAdminMode("console");
        else if (failing == "load")
        {
            VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_RecordLog>::value);
            sim.failNext("xpl_smlGetBatch");
        }
        else if (failing == "other")
        {
            Owned<VRAX_RecordLog> log = keysOf<VRAX_RecordLog>(id);
            Write_Guard<VRAX_RecordLog>().insert(log);
        }
        else if (!failing.empty())
            sim.failNext(failing);
        const Log_Capture log(kLogInfo);
        std::optional<uint16> state;
        if (method != "clear")
            state = static_cast<uint16>(std::stoi(method));
        EXPECT_EQ(call(id, state), row[2]);
        Texts lines = log.texts();
        if (failing == "load")
            lines.erase(lines.begin()); // the load's own
        EXPECT_EQ(joined(lines), row[3]);
        EXPECT_EQ(commands(), row[4]);
        if (failing != "Cmd.Switch.RelAdmin")
            EXPECT_EQ(sim.adminModeHolder(), failing == "held" ? "console" : "");
        sim.restore();
    }
}

TEST_F(RecordLog, MethodsShowAtOnce)
{
    EXPECT_EQ(values("EnabledState"), "2 | 2");
    EXPECT_EQ(call(kAlarm, 6), "0 0");
    EXPECT_EQ(values("EnabledState"), "6 | 2") << "the user log, whichever is asked";
    EXPECT_EQ(call(kUser, 2), "0 0");
    EXPECT_EQ(values("EnabledState"), "2 | 2");
    EXPECT_EQ(instances<VRAX_LogEntry_Provider>().size(), 5u);
    EXPECT_EQ(call(kUser, {}), "0 0");
    EXPECT_EQ(values("CurrentNumberOfRecords"), "0 | 1");
    EXPECT_EQ(instances<VRAX_LogEntry_Provider>().size(), 1u);
}

// Times need not rise: the clock of a switch may be set back.
TEST_F(RecordLog, AnEntryIsFoundOnTheSwitch)
{
    const std::string user = "VRAX:LogEntry:" + kLocalWwn + ":User:";
    const auto named = [&](const std::string& second, const std::string& sum)
    { return user + "Tue Mar 04 10:22:" + second + ".000001 UTC 2008:" + sum; };
    const std::string notFound = std::to_string(GET_INSTANCE_NOT_FOUND) + " ";
    const std::string readError = std::to_string(GET_INSTANCE_FAILED) +
                                  " Exception[CRIT]:switchProviders/VRAX_LogEntry_Provider:get_instance[] "
                                  "xpl_smlGetV returned error";
    const struct
    {
        std::string id;
        std::map<std::string, std::string> answers; // by number; "last": the newest entry
        std::string found;
    } rows[] = {
        {named("10", "97"), {}, "5 a"},
        {named("20", "98"), {}, "6 b"},  // the first of two
        {named("20", "100"), {}, "9 d"}, // no other at that time has its name
        {named("15", "99"), {}, "12 c"},
        {named("15", "98"), {}, notFound + "log entry not found"},
        {named("16", "99"), {}, notFound + "log entry not found"},
        {"VRAX:LogEntry:" + kLocalWwn + ":Alarm:Tue Mar 04 10:22:10.000001 UTC 2008:97", {}, "2 a"},
        {"VRAX:LogEntry:x:User:Tue Mar 04 10:22:10.000001 UTC 2008:97", {}, notFound + "log entry not found"},
        {"VRAX:LogEntry:" + kLocalWwn + ":Third:x:97",
         {},
         notFound + "Badly formatted InstanceID, :User: or :Alarm: not specified"},
        {user + "x:97", {}, notFound + "bad time format (timespec)"},
        {user, {}, notFound + "bad time format (timespec)"},
        {named("10", "97"), {{"0", "status 103"}}, notFound + "Unable to get first log entry"},
        {named("15", "99"), {{"6", "status 103"}}, notFound + "Can't get expected next entry"},
        {named("15", "99"), {{"0", "x"}, {"1", "x"}, {"2", "x"}, {"3", "x"}, {"4", "x"}}, "12 c"},
        {named("16", "99"),
         {{"0", "[5][x]"}, {"5", "[6][x][x]"}, {"last", "x"}},
         notFound + "Unable to parse first_arr | Unable to parse last log entry | Unable to parse next "
                    "logentry time | "
                    "Can't get expected next entry"},
        {named("15", "99"), {{"last", ""}}, ""},
        {named("15", "99"), {{"0", "status 5"}}, "smlerror=5 | "},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        for (const auto& [number, answer] : row.answers)
        {
            const std::string key =
                number == "last" ? "Oper.Switch.LastLogEntry.%d" : "Oper.Switch.NextLogEntry." + number;
            if (answer.compare(0, 7, "status ") == 0)
                sim.failKey(key, std::stoi(answer.substr(7)));
            else
                sim.answer(key, answer);
        }
        std::string expected = row.found;
        if (expected.empty())
        {
            expected = readError;
            expected.replace(expected.find("xpl_smlGetV"), std::string::npos, "Unable to get last log entry");
        }
        else if (expected.compare(0, 8, "smlerror") == 0)
        {
            expected = readError;
            expected.insert(expected.find(' ') + 1, row.found);
        }
        EXPECT_EQ(get(row.id), expected);
        sim.restore();
    }
}

TEST_F(RecordLog, AnEntryOfALongLogIsFoundInAFewSteps)
{
    const auto time = [](int i)
    { return "Tue Mar 04 10:22:31." + std::to_string(100000 + i / 2) + " UTC 2008"; };
    Texts entries;
    // Numbers have gaps, two entries each the same time, and the one in the middle has none.
    for (int i = 1; i <= 1000; ++i)
        entries.push_back("[" + std::to_string(i < 500 ? i : 7 * i) + "][" + (i == 500 ? "never" : time(i)) +
                          "][" + std::string(1, i % 2 == 0 ? 'a' : 'b') + "]");
    sim.open(simulator::SimSwitch::make()
                 .switchFacts([&](simulator::SwitchScenario& facts) { facts.userLog = entries; })
                 .scenario());
    for (const int i : {1, 2, 3, 499, 501, 777, 1000})
    {
        sim.mark();
        const std::string number = std::to_string(i < 500 ? i : 7 * i);
        EXPECT_EQ(get("VRAX:LogEntry:" + kLocalWwn + ":User:" + time(i) + (i % 2 == 0 ? ":97" : ":98")),
                  number + (i % 2 == 0 ? " a" : " b"));
        EXPECT_LE(sim.calls("xpl_smlGetV"), 18u) << "two ends, a bisection of 7000 numbers, two entries";
    }
}

TEST_F(RecordLog, ASearchIsTraced)
{
    const auto traced = [](int second)
    {
        const Owned<VRAX_LogEntry> keys = keysOf<VRAX_LogEntry>(
            "VRAX:LogEntry:" + kLocalWwn + ":Alarm:Tue Mar 04 10:22:" + std::to_string(second) +
            ".000001 UTC 2008:97");
        VRAX_LogEntry* found = nullptr;
        const Log_Capture log(kLogTrace);
        VRAX_LogEntry_Provider().get_instance(keys.get(), found);
        const Owned<VRAX_LogEntry> owner(found);
        Texts lines = log.texts();
        lines.erase(std::remove_if(lines.begin(),
                                   lines.end(),
                                   [](const std::string& line)
                                   { return line.find("_Provider:") != line.npos; }),
                    lines.end());
        return joined(lines);
    };
    // The capture empties the last brackets of a line.
    const std::string read = "response=[2][Tue Mar 04 10:22:10.000001 UTC 2008][] len=43 | ";
    const std::string at = "log entry range []";
    const std::string before = at + " | tv_inst < tv_next | ";
    const std::string behind = at + " | tv_inst > tv_next | ";
    const std::string ends = read + read; // the first and the last entry
    const std::string notFound = "log entry not found";
    EXPECT_EQ(traced(10), ends + read + at + " | " + read + at);
    EXPECT_EQ(traced(9), ends + read + before + read + before + read + before + notFound);
    EXPECT_EQ(traced(30), ends + read + behind + "End of list, log_type = 2 | " + read + behind + notFound);
}

} // namespace
} // namespace cimple
