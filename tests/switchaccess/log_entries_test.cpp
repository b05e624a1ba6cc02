// Tests of the switch's log entries: what their texts say, and the walk over a log.
#include "switchaccess/log_entries.h"

#include "platform/xpl_fzs.h"
#include "support/VRAX_Except.h"
#include "tests/common/testing/Switch_Test.h"

#include <ctime>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

constexpr Caller kCaller = {"x/Y", "load", 7};

TEST(LogEntryTexts, AreSplitAtTheirBrackets)
{
    const struct
    {
        const char* text;
        std::size_t max;
        Texts fields; // in the slots; "-" is null
        std::size_t count;
        const char* rest;
    } rows[] = {
        {"[17][Tue Mar 04 10:22:31.123456 UTC 2008][port 3 up]",
         8,
         {"17", "Tue Mar 04 10:22:31.123456 UTC 2008", "port 3 up"},
         3,
         ""},
        {"a[1]b[] [2[3]c", 8, {"1", "", "2[3"}, 3, "c"},
        {"", 8, {}, 0, ""},
        {"none", 8, {}, 0, "none"},
        {"[1] [2", 8, {"1"}, 1, " [2"},
        {"]1[2]", 8, {"2"}, 1, ""},
        {"[1][2][3][4]", 3, {"1", "2", "-"}, 3, "[4]"},
        {"[1][2][3]", 3, {"1", "2", "-"}, 3, ""},
        {"[1]", 0, {}, 0, "[1]"},
    };
    for (const auto& row : rows)
    {
        std::string text = row.text;
        char* fields[8] = {};
        std::size_t count = 99;
        const char* rest = tokenizeLog(text.data(), fields, row.max, count);
        EXPECT_EQ(count, row.count) << row.text;
        EXPECT_STREQ(rest, row.rest) << row.text;
        for (std::size_t i = 0; i < row.fields.size(); ++i)
            EXPECT_EQ(fields[i] != nullptr ? fields[i] : "-", row.fields[i]) << row.text;
    }
}

TEST(LogEntryTexts, TellTheTime)
{
    const auto localSeconds = [](int year, int month, int day, int hour, int minute, int second)
    {
        std::tm fields{};
        fields.tm_year = year - 1900;
        fields.tm_mon = month - 1;
        fields.tm_mday = day;
        fields.tm_hour = hour;
        fields.tm_min = minute;
        fields.tm_sec = second;
        fields.tm_isdst = -1;
        return std::mktime(&fields);
    };
    const struct
    {
        const char* text;
        const char* fault; // null: none
        std::time_t seconds;
        long microseconds;
    } rows[] = {
        {"Tue Mar 04 10:22:31.123456 UTC 2008", nullptr, localSeconds(2008, 3, 4, 10, 22, 31), 123456},
        {"Tue Jul  4 00:00:00.000007 CEST 2028", nullptr, localSeconds(2028, 7, 4, 0, 0, 0), 7},
        {"Tue Mar 04 10:22:31. UTC 2008", "bad time format (usec)", 0, 0},
        {"Tue Mar 04 10:22:31 UTC 2008", "bad time format (usec)", 0, 0},
        {"Tue Mar 04 10:22:31.1000000 UTC 2008", "bad time format (usec)", 0, 0},
        {"Tue Mar 04 10:22:31.-1 UTC 2008", "bad time format (usec)", 0, 0},
        {"Tue Mar 04 10:22:31.123456", "bad time format (timezone)", 0, 0},
        {"Tue Mar 04 10:22:31.123456 2008", "bad time format (timezone)", 0, 0},
        {"Tue Mar 04 10:22:31.123456 UTC year", "bad time format (timezone)", 0, 0},
        {"", "bad time format (timespec)", 0, 0},
        {"2008-03-04", "bad time format (timespec)", 0, 0},
    };
    for (const auto& row : rows)
    {
        Log_Time time{0, 0};
        const char* fault = timestringToTimeval(row.text, time);
        EXPECT_EQ(std::string(fault != nullptr ? fault : ""), row.fault != nullptr ? row.fault : "")
            << row.text;
        EXPECT_EQ(time.tv_sec, row.seconds) << row.text;
        EXPECT_EQ(time.tv_usec, row.microseconds) << row.text;
    }
    EXPECT_EQ(tv_cmp({5, 1}, {3, 9}), 2);
    EXPECT_EQ(tv_cmp({3, 1}, {3, 9}), -8);
    EXPECT_EQ(tv_cmp({3, 9}, {3, 9}), 0);
    EXPECT_LT(tv_cmp({0, 0}, {0x7fffffff, 0}), 0) << "far apart";
}

TEST(LogEntryTexts, NameTheirLog)
{
    const std::pair<const char*, const char*> rows[] = {
        {"VRAX:RecordLog:100002a5c0de0001:User", "User"},
        {"a:b:c:d:e", "d:e"},
        {"a:b:c:", ""},
        {"a:b:c", nullptr},
        {"", nullptr},
    };
    for (const auto& [id, name] : rows)
    {
        const auto found = getLogNameFromInstanceID(id);
        EXPECT_EQ(found.value_or("none"), name != nullptr ? name : "none") << id;
    }
    EXPECT_EQ(messageChecksum("ab\xff"), 97u + 98u + 255u);
}

class LogWalk : public Switch_Test
{
  protected:
    static constexpr char kTime[] = "][Tue Mar 04 10:22:31.123456 UTC 2008][";

    void bring(const std::vector<int>& numbers)
    {
        sim.open(simulator::SimSwitch::make()
                     .switchFacts(
                         [&](simulator::SwitchScenario& facts)
                         {
                             for (const int number : numbers)
                                 facts.alarmLog.push_back("[" + std::to_string(number) + kTime + "m]");
                         })
                     .scenario());
    }
    // The numbers of the entries, and what was thrown or logged.
    static Texts walk()
    {
        Texts found;
        const Log_Capture log(kLogInfo);
        try
        {
            for (const Log_Entry& entry : Log_Walk(kAlarmLog, kCaller))
                found.push_back(std::to_string(entry.number()));
        }
        catch (const VRAX_Except& failure)
        {
            found.emplace_back(failure.message);
        }
        for (const std::string& line : log.texts())
            found.push_back(line);
        return found;
    }
    // Entry `number` and the ones that lead to it read as `text`.
    void spoil(int before, int number, const std::string& text)
    {
        for (int i = before; i < number; ++i)
            sim.answer("Oper.Switch.NextAlarmEntry." + std::to_string(i), text);
    }
};

TEST_F(LogWalk, GoesOnBehindWhatIsNoEntry)
{
    const std::string unparsed = "logging entry unable to be parsed";
    bring({});
    EXPECT_EQ(walk(), Texts());
    bring({3, 4, 9});
    EXPECT_EQ(walk(), (Texts{"3", "4", "9"}));
    spoil(3, 4, "no entry");
    EXPECT_EQ(walk(), (Texts{"3", "9", unparsed}));
    sim.restore();
    spoil(0, 3, "no entry");
    sim.mark();
    EXPECT_EQ(walk(), (Texts{"4", "9", unparsed}));
    EXPECT_LT(sim.platformCalls(), 40u) << "numbers are not tried one by one";
    sim.restore();
    spoil(3, 4, "[4][and no more]");
    sim.mark();
    EXPECT_EQ(walk(), (Texts{"3", "9", unparsed}));
    EXPECT_EQ(sim.platformCalls(), 4u) << "the number is known";
    sim.restore();
    spoil(4, 9, std::string("[2") + kTime + "m]");
    EXPECT_EQ(walk(), (Texts{"3", "4", unparsed})) << "numbers rise";

    sim.restore();
    sim.failKey("Oper.Switch.NextAlarmEntry.4", XPL_NOT_AVAILABLE);
    EXPECT_EQ(walk(), (Texts{"3", "4", "xpl_smlGetV returned error", "smlerror=16"}));
}

TEST_F(LogWalk, TellsTheNewestEntryAndRefusesOtherLogs)
{
    const auto thrown = [](auto action)
    {
        try
        {
            action();
        }
        catch (const VRAX_Except& failure)
        {
            return std::string(failure.message);
        }
        return std::string("nothing");
    };
    bring({3, 4});
    EXPECT_EQ(getLastEntry(kAlarmLog, kCaller).substr(0, 3), "[4]");
    EXPECT_EQ(thrown([] { getLastEntry(kUserLog, kCaller); }), "xpl_smlGetV returned error") << "empty";
    for (const int type : {0, 3})
    {
        EXPECT_EQ(thrown([=] { getLastEntry(type, kCaller); }), "Bad log_type passed to getLastLogEntry");
        EXPECT_EQ(thrown([=] { getNextEntry(type, 0, kCaller); }), "Bad log_type passed to getNextLogEntry");
    }
}

} // namespace
} // namespace cimple
