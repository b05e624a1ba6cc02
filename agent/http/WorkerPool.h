// A bounded pool of threads that run operations, so that no operation runs on an I/O thread.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace cimd
{

/**
 * Tasks start in the order of submission. At most `workers` run and `queued` wait; a place is reserved first,
 * so that a caller can refuse work before it commits to it. All members may be called from any thread.
 */
class WorkerPool
{
  public:
    using Task = std::function<void()>;

    WorkerPool(unsigned workers, unsigned queued);
    /** Runs what was submitted, then joins the threads. */
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /** Takes a place for one task; false when all are taken. Each success is followed by exactly one
     * submit(). */
    bool reserve();
    /** Runs a task in a reserved place. The task must not throw. */
    void submit(Task task);

  private:
    void run();

    const std::size_t _capacity;
    std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<Task> _tasks;
    std::size_t _taken = 0; // reserved, waiting or running
    bool _stopping = false;
    std::vector<std::thread> _threads;
};

} // namespace cimd
