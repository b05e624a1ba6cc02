// How long a supervisor waits; what it does otherwise is tested with the program.
#include "agent/run/Supervisor.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

TEST(RestartPause, GrowsWhileNothingLivesLong)
{
    using std::chrono::milliseconds;
    const struct
    {
        int lived;
        int pause;
    } ends[] = {{1, 100},
                {59'999, 200},
                {0, 400},
                {0, 800},
                {0, 1'600},
                {0, 3'200},
                {60'000, 100},
                {0, 200},
                {0, 400},
                {0, 800},
                {0, 1'600},
                {0, 3'200},
                {0, 6'400},
                {0, 12'800},
                {0, 15000},
                {0, 15'000},
                {3'600'000, 100}};
    RestartPause restart(std::chrono::seconds(15));
    for (const auto& end : ends)
        EXPECT_EQ(milliseconds(end.pause), restart.next(milliseconds(end.lived))) << end.lived;
    RestartPause atOnce(std::chrono::seconds(0));
    EXPECT_EQ(milliseconds(0), atOnce.next(milliseconds(0)));
}

} // namespace
} // namespace cimd
