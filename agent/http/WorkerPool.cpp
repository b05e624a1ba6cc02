// The worker threads and their queue.
#include "agent/http/WorkerPool.h"

#include <utility>

namespace cimd
{

WorkerPool::WorkerPool(unsigned workers, unsigned queued) : _capacity(std::size_t{workers} + queued)
{
    _threads.reserve(workers);
    for (unsigned i = 0; i < workers; ++i)
        _threads.emplace_back([this] { run(); });
}

WorkerPool::~WorkerPool()
{
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stopping = true;
    }
    _wake.notify_all();
    for (std::thread& thread : _threads)
        thread.join();
}

bool WorkerPool::reserve()
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_taken == _capacity)
        return false;
    ++_taken;
    return true;
}

void WorkerPool::submit(Task task)
{
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _tasks.push_back(std::move(task));
    }
    _wake.notify_one();
}

void WorkerPool::run()
{
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;)
    {
        _wake.wait(lock, [this] { return _stopping || !_tasks.empty(); });
        if (_tasks.empty())
            return;
        Task task = std::move(_tasks.front());
        _tasks.pop_front();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
        --_taken;
    }
}

} // namespace cimd
