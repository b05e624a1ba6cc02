// Date-times: what is one, and what it means in microseconds.
#include "agent/cim/CimDateTime.h"

#include <gtest/gtest.h>
#include <string>

namespace cimd
{
namespace
{

TEST(CimDateTime, ReadsValidTextsAndNothingElse)
{
    const struct
    {
        const char* text;
        bool isValid;
    } rows[] = {
        {"20240229120000.000000+000", true},   // leap day
        {"20230229120000.000000+000", false},  // no leap day
        {"21000229120000.000000+000", false},  // a century is none
        {"20000229120000.000000+000", true},   // unless divisible by 400
        {"20241301000000.000000+000", false},  // month 13
        {"20161231235960.000000+000", true},   // leap second
        {"20161231235961.000000+000", false},  //
        {"20240131000000.000000-720", true},   //
        {"20240131000000.000000*720", false},  // no sign
        {"2024013100000 .000000+000", false},  //
        {"20240131000000.000000+0000", false}, // one too long
        {"", false},                           //
        {"20240131000000.123***+000", true},   // digits of the fraction blanked
        {"20240131000000.1*3***+000", false},  // not from the end
        {"2024013100****.******+000", true},   // whole fields blanked
        {"20240131000***.******+000", false},  // half a field
        {"2024013100****.000000+000", false},  // a fraction of something blanked
        {"**************.******+***", true},   //
        {"00000005010203.000004:000", true},   // interval
        {"99999999235959.999999:000", true},   //
        {"00000005010260.000004:000", false},  // no leap second in an interval
        {"00000005010203.000004:001", false},  // no zone in an interval
    };
    for (const auto& row : rows)
        EXPECT_EQ(CimDateTime::parse(row.text).has_value(), row.isValid) << row.text;
}

TEST(CimDateTime, CountsMicrosecondsFromTheEpoch)
{
    const struct
    {
        const char* text;
        std::uint64_t microseconds;
    } rows[] = {
        {"19700101000000.000000+000", 0},
        {"19700101000000.000001+000", 1},
        {"20000301000000.000000+000", 951868800000000},
        {"20240229235959.999999+000", 1709251199999999},
        {"20240301013000.000000+090", 1709251200000000}, // 90 minutes east of UTC
        {"20240229223000.000000-090", 1709251200000000}, // and west
        {"99991231235959.999999+000", 253402300799999999},
        {"19691231235959.000000+000", 0}, // before the epoch
        {"00000001020304.000005:000", 93784000005},
        {"1970010206****.******+000", 108'000'000'000}, // blanked fields count as their least value
    };
    for (const auto& row : rows)
        EXPECT_EQ(CimDateTime::parse(row.text).value().microseconds(), row.microseconds) << row.text;
}

TEST(CimDateTime, WritesWhatItReads)
{
    // The first and last microsecond of days around year and month ends, where calendars go wrong.
    const std::uint64_t day = 86'400'000'000;
    for (const std::uint64_t start :
         {0ULL, 951'782'400'000'000ULL, 4'107'456'000'000'000ULL, 253'402'214'400'000'000ULL})
        for (const std::uint64_t time : {start, start + day - 1})
            EXPECT_EQ(
                CimDateTime::parse(CimDateTime::fromMicroseconds(time).value().text()).value().microseconds(),
                time);
    EXPECT_EQ(CimDateTime::fromMicroseconds(1709164800000000)->text(), "20240229000000.000000+000");
    EXPECT_FALSE(CimDateTime::fromMicroseconds(253'402'300'800'000'000)); // the year 10000
    EXPECT_FALSE(CimDateTime::fromMicroseconds(UINT64_MAX));

    EXPECT_EQ(CimDateTime::intervalFromMicroseconds(93784000005)->text(), "00000001020304.000005:000");
    EXPECT_FALSE(CimDateTime::intervalFromMicroseconds(100'000'000 * day));
}

} // namespace
} // namespace cimd
