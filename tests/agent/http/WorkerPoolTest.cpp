// The worker pool: bounded, orderly, and complete at the end.
#include "agent/http/WorkerPool.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

TEST(WorkerPool, GivesAPlaceBackOnlyWhenTheTaskHasRun)
{
    WorkerPool pool(1, 1);
    std::promise<void> gate;
    std::promise<void> started;
    ASSERT_TRUE(pool.reserve());
    pool.submit(
        [&]
        {
            started.set_value();
            gate.get_future().wait();
        });
    started.get_future().wait();
    ASSERT_TRUE(pool.reserve());
    EXPECT_FALSE(pool.reserve()) << "one runs, one waits";
    pool.submit([] {});
    EXPECT_FALSE(pool.reserve()) << "a task that waits keeps its place";
    gate.set_value();
    while (!pool.reserve()) // until the second task has run
        std::this_thread::yield();
    pool.submit([] {});
}

TEST(WorkerPool, RunsEverythingSubmittedBeforeItEnds)
{
    std::vector<int> order;
    std::atomic<int> parallel{0};
    {
        WorkerPool ordered(1, 1000);
        WorkerPool many(8, 1000);
        for (int i = 0; i < 1000; ++i)
        {
            ASSERT_TRUE(ordered.reserve() && many.reserve());
            ordered.submit([&order, i] { order.push_back(i); });
            many.submit([&parallel] { ++parallel; });
        }
    }
    ASSERT_EQ(1000U, order.size());
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(1000, parallel);
}

} // namespace
} // namespace cimd
