// What is left of the requests of a process that crashed.
#include "agent/run/InFlight.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace cimd
{
namespace
{

std::string texts(const InFlight& table)
{
    std::string all;
    for (const InFlight::Request& request : table.list())
        all += request.operation + "|" + request.className + "|" + request.peer +
               (request.isCulprit ? "|crashed" : "") + "\n";
    return all;
}

TEST(InFlightTest, ShowsWhatAProcessLeftBehind)
{
    InFlight table(4);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
    {
        const InFlight::Entry waiting(&table, "GetInstance", "192.0.2.1:4000");
        InFlight::Entry crashing(&table, "EnumerateInstances", "[::1]:5000");
        crashing.about("Test_Faulty");
        InFlight::Entry(&table, "GetClass", "192.0.2.1:4001"); // ended
        InFlight::markCulprit();
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    EXPECT_EQ("GetInstance||192.0.2.1:4000\nEnumerateInstances|Test_Faulty|[::1]:5000|crashed\n",
              texts(table));
    table.clear();
    EXPECT_EQ("", texts(table));
    const InFlight::Entry next(&table, "GetClass", "p");
    EXPECT_EQ("GetClass||p\n", texts(table)) << "nothing is left of a place's last request";
}

TEST(InFlightTest, AnswersGoOnWhenEveryPlaceIsTaken)
{
    InFlight table(1);
    const InFlight::Entry first(&table, "First", "p");
    {
        InFlight::Entry second(&table, "Second", "p");
        second.about("Class");
        InFlight::markCulprit(); // of a request without a place
        InFlight::Entry unrecorded(nullptr, "Third", "p");
        unrecorded.about("Class");
    }
    EXPECT_EQ("First||p\n", texts(table));
}

TEST(InFlightTest, CutsLongTexts)
{
    InFlight table(1);
    InFlight::Entry entry(&table, std::string(63, 'o'), "p");
    entry.about(std::string(64, 'c'));
    EXPECT_EQ(std::string(63, 'o') + "|" + std::string(60, 'c') + "...|p\n", texts(table));
}

TEST(InFlightTest, ThreadsTakeAndLeavePlaces)
{
    InFlight table(3);
    const auto work = [&table]
    {
        for (int round = 0; round < 2000; ++round)
        {
            InFlight::Entry entry(&table, "GetInstance", "p");
            entry.about("Class");
            EXPECT_LE(table.list().size(), 3U);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ("", texts(table));
}

} // namespace
} // namespace cimd
