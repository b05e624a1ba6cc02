// The worker pool: orderly, and complete at the end. That it is bounded is seen at the server.
#include "agent/http/WorkerPool.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

TEST(WorkerPool, RunsEverythingSubmittedBeforeItEnds)
{
    std::vector<int> order;
    std::atomic<int> parallel{0};
    {
        WorkerPool ordered(1, 1000);
        WorkerPool many(8, 1000);
        for (int i = 0; i < 1000; ++i)
        {
            ASSERT_TRUE(ordered.submit([&order, i](WorkerPool::Worker&) { order.push_back(i); }));
            ASSERT_TRUE(many.submit([&parallel](WorkerPool::Worker&) { ++parallel; }));
        }
    }
    ASSERT_EQ(1000U, order.size());
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(1000, parallel);
}

TEST(WorkerPool, IsThereForItsTasksWhileItEnds)
{
    WorkerPool pool(3, 0);
    std::promise<void> gate;
    bool hasRun = false;
    ASSERT_TRUE(pool.submit(
        [&](WorkerPool::Worker& worker)
        {
            gate.get_future().wait();
            pool.giveBack(worker);
            hasRun = true;
        }));
    std::thread ending([&pool] { pool.join(); });
    for (bool isTaken = true; isTaken;) // until the end has begun
    {
        const auto done = std::make_shared<std::promise<void>>();
        isTaken = pool.submit(
            [&pool, done](WorkerPool::Worker& worker)
            {
                pool.giveBack(worker);
                done->set_value();
            });
        if (isTaken)
            done->get_future().wait();
    }
    gate.set_value();
    ending.join();
    EXPECT_TRUE(hasRun);
}

TEST(WorkerPool, ReplacesThreadsThatAreWrittenOff)
{
    std::promise<void> gate;
    const std::shared_future<void> opened = gate.get_future().share();
    std::atomic<int> returned{0};
    {
        WorkerPool pool(1, 0);
        for (unsigned lost = 1; lost <= 3; ++lost)
        {
            std::promise<WorkerPool::Worker*> hanging;
            const bool isTaken = pool.submit(
                [&returned, &hanging, opened](WorkerPool::Worker& worker)
                {
                    hanging.set_value(&worker);
                    opened.wait();
                    ++returned;
                });
            ASSERT_TRUE(isTaken) << "the place of the one before is free";
            EXPECT_EQ(lost, pool.writeOff(*hanging.get_future().get()));
        }
        gate.set_value();
    }
    EXPECT_EQ(3, returned) << "the end of the pool waits for the lost ones";
}

} // namespace
} // namespace cimd
