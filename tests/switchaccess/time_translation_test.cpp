// Tests of the conversion of time stamps, in several time zones.
#include "switchaccess/time_translation.h"

#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

// Zones as POSIX texts, which need no database of zones.
constexpr const char* kUtc = "UTC0";
constexpr const char* kNewYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kKolkata = "IST-5:30";
constexpr const char* kNewfoundland = "NST3:30NDT,M3.2.0,M11.1.0";
constexpr const char* kTonga = "<+13>-13";

// Seconds of 2026-01-15 12:00:00 and 2026-07-15 12:00:00 UTC.
constexpr long kWinter = 1768478400;
constexpr long kSummer = 1784116800;

class TimeTranslation : public testing::Test
{
  protected:
    ~TimeTranslation() override
    {
        unsetenv("TZ");
        tzset();
    }
    static void use(const char* zone) { setenv("TZ", zone, 1); }
};

TEST_F(TimeTranslation, OffsetsFromUtc)
{
    struct Row
    {
        const char* zone;
        const char* winter;
        const char* summer;
    };
    const Row rows[] = {
        {kUtc, "+000", "+000"},
        {kNewYork, "-300", "-240"},
        {kBerlin, "+060", "+120"},
        {kKolkata, "+330", "+330"},
        {kNewfoundland, "-210", "-150"},
        {kTonga, "+780", "+780"},
        {"<-24>24", "-144", "-144"}, // three digits are all there is room for
        {"<-01>0:30", "-030", "-030"},
    };
    for (const Row& row : rows)
    {
        use(row.zone);
        EXPECT_STREQ(calcLocalUTCOffset(kWinter).c_str(), row.winter) << row.zone;
        EXPECT_STREQ(calcLocalUTCOffset(kSummer).c_str(), row.summer) << row.zone;
    }
}

TEST_F(TimeTranslation, SwitchTextsToDatetimes)
{
    const std::string cleared = "00000000000000.000000:000";
    struct Row
    {
        const char* zone;
        const char* text;
        std::string datetime;
    };
    const Row rows[] = {
        {kUtc, "111420352026", "20261114203500.000000+000"},
        {kNewYork, "111420352026", "20261114203500.000000-300"},
        {kNewYork, "071420352026", "20260714203500.000000-240"},
        {kBerlin, "071420352026", "20260714203500.000000+120"},
        {kKolkata, "111420352026", "20261114203500.000000+330"},
        // Beyond 32-bit seconds.
        {kBerlin, "071420352050", "20500714203500.000000+120"},
        // The hour that daylight saving leaves out.
        {kNewYork, "030802302026", "20260308033000.000000-240"},
        // Fields carry over; a field without a number is 0.
        {kUtc, "131420352026", "20270114203500.000000+000"},
        {kUtc, "123124602026", "20270101010000.000000+000"},
        {kUtc, "02290000 2026", "02020301000000.000000+000"},
        {kUtc, "xx14203520269", "20251214203500.000000+000"},
        {kUtc, "-114203520269", "20251114203500.000000+000"},
        {kUtc, "111420352026 and more", "20261114203500.000000+000"},
        {kUtc, "11142035202", cleared},
        {kUtc, "", cleared},
    };
    for (const Row& row : rows)
    {
        use(row.zone);
        EXPECT_EQ(std::string(smlTimeToCIMDatetime(row.text).ascii().c_str()), row.datetime)
            << row.zone << ", " << row.text;
    }
}

TEST_F(TimeTranslation, DatetimesToSwitchTexts)
{
    struct Row
    {
        const char* zone;
        long long seconds;
        const char* text;
    };
    const Row rows[] = {
        {kUtc, 1794692100, "1114Nov352026"}, // 2026-11-14 21:35 UTC
        {kNewYork, 1794692100, "1114Nov352026"},
        {kKolkata, 1794692100, "1115Nov052026"},
        {kNewfoundland, 1794692100, "1114Nov052026"},
        {kUtc, kSummer, "0715Jul002026"},
        {kUtc, 1204243140, "0228Feb592008"},
        {kUtc, 2147483647, "0119Jan142038"},
        {kUtc, 2147483648, "1213Dec451901"}, // 32-bit seconds start over
    };
    for (const Row& row : rows)
    {
        use(row.zone);
        const Datetime datetime(static_cast<uint64>(row.seconds) * Datetime::SEC + 999999, 0);
        EXPECT_STREQ(CIMDatetimeTosmlTime(datetime).c_str(), row.text) << row.zone << ", " << row.seconds;
    }
}

} // namespace
} // namespace cimple
