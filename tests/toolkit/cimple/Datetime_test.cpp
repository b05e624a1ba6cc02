// Datetimes: text to object to text under several time zones, invalid text, sharing, the present.
#include <cimple/cimple.h>
#include <ctime>
#include <gtest/gtest.h>

using namespace cimple;

namespace
{
// The process's time zone for the length of a scope, as a POSIX rule: no zone files are needed.
class Zone
{
  public:
    explicit Zone(const char* rule)
    {
        setenv("TZ", rule, 1);
        tzset();
    }
    ~Zone()
    {
        unsetenv("TZ");
        tzset();
    }
};

const char* const kUtc = "UTC0";
const char* const kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3"; // summer time
const char* const kKolkata = "IST-5:30";
const char* const kNewfoundland = "NST3:30NDT,M3.2.0,M11.1.0";
const char* const kZones[] = {kUtc, kBerlin, kKolkata, kNewfoundland, "EST5EDT,M3.2.0,M11.1.0"};

TEST(DatetimeTest, TextReadsBackUnchangedInAnyZone)
{
    const char* const texts[] = {
        "20260115120000.000000+000",
        "20260714235959.999999+330",
        "20260329023000.123456+060", // a time that clocks in Berlin skip
        "20261025023000.123456+060", // one that they show twice
        "19700101000000.000000+000",
        "19691231235959.999999-720",
        "20380119031408.000000-005", // beyond 32-bit seconds
        "99991231235959.999999+999",
        "00010101000000.000000-999",
        "00000000000000.000000+000", // a date that is not known
        "00000000123456.000001-060",
        "00000000000000.000000:000",
        "00000000000000.000001:000",
        "00000001020304.000005:000",
        "99999999235959.999999:000",
    };
    for (const char* rule : kZones)
    {
        const Zone zone(rule);
        for (const char* text : texts)
        {
            Datetime datetime;
            ASSERT_TRUE(datetime.set(text)) << rule << " " << text;
            EXPECT_STREQ(datetime.ascii().c_str(), text) << rule;
            EXPECT_EQ(datetime.is_interval(), text[21] == ':') << text;
            EXPECT_TRUE(Datetime(text) == datetime) << text;
        }
    }
}

TEST(DatetimeTest, TimestampsCountFromTheEpochInLocalTime)
{
    const struct
    {
        const char* rule;
        const char* text;
        uint64 seconds;
    } rows[] = {
        {kUtc, "20260115120000.000000+000", 1768478400},
        {kUtc, "20260115120000.000000+060", 1768478400}, // the offset is not applied
        {kBerlin, "20260115120000.000000+060", 1768478400 - 3600},
        {kBerlin, "20260715120000.000000+120", 1784116800 - 2 * 3600}, // summer
        {kKolkata, "20260115120000.000000+330", 1768478400 - 19800},
        {kNewfoundland, "20260715120000.000000-150", 1784116800 + 9000},
    };
    for (const auto& row : rows)
    {
        const Zone zone(row.rule);
        const Datetime datetime(row.text);
        EXPECT_EQ(datetime.usec(), row.seconds * Datetime::SEC) << row.rule << " " << row.text;
        // And the other way round.
        EXPECT_STREQ(Datetime(datetime.usec(), datetime.offset()).ascii().c_str(), row.text) << row.rule;
    }
}

TEST(DatetimeTest, RefusesInvalidText)
{
    const char* const texts[] = {
        "",
        "2026",
        "20260115120000.000000+00",
        "20260115120000.000000+0000",
        "2026011512****.000000+000",
        "20260115120000.******+000",
        "20260115120000,000000+000",
        "20260115120000.000000*000",
        "20260115120000.000000+0x0",
        "00000001020304.000005:001",
        "-0000001020304.000005:000",
        " 0260115120000.000000+000",
    };
    for (const char* text : texts)
    {
        Datetime datetime(uint64(7));
        EXPECT_FALSE(datetime.set(text)) << text;
        EXPECT_TRUE(datetime == Datetime(uint64(7))) << text << ": must stay as it was";
        EXPECT_TRUE(Datetime(text) == Datetime(0, 0)) << text << ": the epoch as a timestamp";
    }
}

TEST(DatetimeTest, TakesFields)
{
    const Zone zone(kBerlin);
    Datetime datetime;
    datetime.set_timestamp(2026, 7, 4, 1, 2, 3, 456, -90);
    EXPECT_STREQ(datetime.ascii().c_str(), "20260704010203.000456-090");
    EXPECT_STREQ(datetime.ascii(true).c_str(), "2026/07/04 01:02:03.000456-090");

    uint32 year, month, day, hours, minutes, seconds, microseconds;
    sint32 utc;
    datetime.get_timestamp(year, month, day, hours, minutes, seconds, microseconds, utc);
    EXPECT_EQ(year, 2026u);
    EXPECT_EQ(month * 1000000 + day * 10000 + hours * 100 + minutes, 7040102u);
    EXPECT_EQ(seconds * 1000 + microseconds, 3456u);
    EXPECT_EQ(utc, -90);

    datetime.set_interval(12345678, 1, 2, 3, 4);
    EXPECT_STREQ(datetime.ascii().c_str(), "12345678010203.000004:000");
    EXPECT_STREQ(datetime.ascii(true).c_str(), "12345678 01 02 03.000004:000");
    uint32 days;
    datetime.get_interval(days, hours, minutes, seconds, microseconds);
    EXPECT_EQ(days, 12345678u);
    EXPECT_EQ(hours * 10000 + minutes * 100 + seconds, 10203u);
    EXPECT_EQ(microseconds, 4u);
}

TEST(DatetimeTest, ChangesLeaveCopiesAlone)
{
    const Zone zone(kUtc);
    Datetime changed("20260115120000.000000+060");
    const Datetime copy(changed);
    changed.usec(changed.usec() + Datetime::HOUR);
    EXPECT_STREQ(changed.ascii().c_str(), "20260115130000.000000+060");
    changed.offset(-30);
    EXPECT_STREQ(changed.ascii().c_str(), "20260115130000.000000-030");
    EXPECT_STREQ(copy.ascii().c_str(), "20260115120000.000000+060");

    Datetime interval{uint64(Datetime::DAY)};
    interval.usec(Datetime::MIN);
    interval.offset(60); // intervals have none
    EXPECT_STREQ(interval.ascii().c_str(), "00000000000100.000000:000");
    interval.clear();
    EXPECT_TRUE(interval == Datetime());
}

TEST(DatetimeTest, ComparesKindTimeAndOffset)
{
    EXPECT_TRUE(Datetime(5, 60) == Datetime(5, 60));
    EXPECT_FALSE(Datetime(5, 60) == Datetime(5, 61));
    EXPECT_FALSE(Datetime(5, 60) == Datetime(6, 60));
    EXPECT_FALSE(Datetime(5, 0) == Datetime(uint64(5)));
    EXPECT_FALSE(Datetime(0, 0) == Datetime()) << "a point in time is no length of time";
}

TEST(DatetimeTest, NowIsLocalTimeWithItsOffset)
{
    for (const auto& [rule, offset] :
         {std::pair(kUtc, 0), std::pair(kKolkata, 330), std::pair("XXX4:30", -270)})
    {
        const Zone zone(rule);
        const uint64 before = Time::now();
        const Datetime now = Datetime::now();
        const uint64 after = Time::now();
        EXPECT_TRUE(now.is_timestamp());
        EXPECT_TRUE(before <= now.usec() && now.usec() <= after) << rule;
        EXPECT_EQ(now.offset(), offset) << rule;
        EXPECT_TRUE(Datetime(now.ascii().c_str()) == now) << rule;
    }
}
} // namespace
