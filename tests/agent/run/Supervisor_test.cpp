// When a supervisor gives up; what it does otherwise is tested with the program.
#include "agent/run/Supervisor.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

TEST(CrashStreakTest, CountsCrashesThatFollowEachOther)
{
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    const struct
    {
        milliseconds lived;
        unsigned length;
        bool tooMany;
    } crashes[] = {
        {milliseconds(1), 1, false},
        {seconds(10), 2, false},
        {milliseconds(10001), 1, false}, // it had worked
        {seconds(3600), 1, false},
        {seconds(1), 2, false},
        {seconds(1), 3, true},
    };
    CrashStreak streak(3, seconds(10));
    for (const auto& crash : crashes)
    {
        EXPECT_EQ(crash.tooMany, streak.add(crash.lived)) << crash.lived.count();
        EXPECT_EQ(crash.length, streak.length()) << crash.lived.count();
    }
    CrashStreak strict(1, seconds(10));
    EXPECT_TRUE(strict.add(seconds(3600)));
}

} // namespace
} // namespace cimd
