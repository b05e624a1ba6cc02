// What the table of calls shows, and that clients cannot make it grow.
#include "agent/run/Counters.h"

#include <gtest/gtest.h>
#include <thread>

namespace cimd
{
namespace
{

using std::chrono::microseconds;

TEST(CountersTest, SumsUpByClassAndOperation)
{
    Counters counters({"Test_Widget", "Test_Gadget"});
    counters.add({"GetInstance", "Test_Gadget", false, microseconds(40), 1, 900});
    counters.add({"GetInstance", "TEST_gadget", true, microseconds(20), 0, 300});
    counters.add({"EnumerateInstances", "Test_Gadget", false, microseconds(1000), 12, 20000});
    counters.add({"GetInstance", "Test_Widget", false, microseconds(5), 1, 800});
    counters.add({"EnumerateClassNames", "", false, microseconds(7), 3, 400});
    counters.add({"", "", true, microseconds(1), 0, 200});
    for (int i = 0; i < 1000; ++i)
        counters.add({"GetInstance", "Made_Up" + std::to_string(i), true, microseconds(1), 0, 10});
    const std::vector<std::string> expected = {
        "CLASS        OPERATION            CALLS  ERRORS  TOTAL us  LONGEST us  RESULTS  BYTES",
        "Test_Widget  GetInstance              1       0         5           5        1    800",
        "Test_Gadget  GetInstance              2       1        60          40        1   1200",
        "Test_Gadget  EnumerateInstances       1       0      1000        1000       12  20000",
        "-            EnumerateClassNames      1       0         7           7        3    400",
        "-            (unknown)                1       1         1           1        0    200",
        "(unknown)    GetInstance           1000    1000      1000           1        0  10000",
        "all                                1006    1002      2073        1000       17  32600",
    };
    EXPECT_EQ(expected, counters.table());
}

TEST(CountersTest, LoseNothingBetweenThreads)
{
    Counters counters({"Test_Widget"});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < 1000; ++round)
                    counters.add({"GetInstance", "Test_Widget", false, microseconds(1), 1, 1});
                counters.table();
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ("Test_Widget  GetInstance   4000       0      4000           1     4000   4000",
              counters.table()[1]);
}

} // namespace
} // namespace cimd
