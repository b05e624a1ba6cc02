// The worker threads and their queue.
#include "agent/http/WorkerPool.h"

#include <system_error>
#include <utility>

namespace cimd
{

// The pool is made before its threads, so that those that there are end when another cannot be had.
WorkerPool::WorkerPool(unsigned workers, unsigned queued) : WorkerPool(std::size_t{workers} + queued)
{
    std::lock_guard<std::mutex> lock(_mutex);
    for (unsigned i = 0; i < workers; ++i)
        add();
}

void WorkerPool::join()
{
    std::unique_lock<std::mutex> lock(_mutex);
    _stopping = true;
    _wake.notify_all();
    for (; !_workers.empty(); _workers.pop_front()) // what is added meanwhile comes last
    {
        std::thread& first = _workers.front().thread;
        lock.unlock();
        first.join();
        lock.lock();
    }
}

void WorkerPool::add()
{
    Worker& worker = _workers.emplace_back();
    try
    {
        worker.thread = std::thread([this, &worker] { run(worker); });
    }
    catch (const std::system_error&)
    {
        _workers.pop_back();
        throw;
    }
}

bool WorkerPool::submit(Task task)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_stopping || _tasks.size() + _running >= _capacity)
        return false;
    _tasks.push_back(std::move(task));
    _wake.notify_one();
    return true;
}

void WorkerPool::joinReturned()
{
    _workers.remove_if(
        [](Worker& worker)
        {
            if (worker.hasReturned)
                worker.thread.join(); // it has let go of the lock, or it could not be seen here
            return worker.hasReturned;
        });
}

// With the lock held.
void WorkerPool::freePlace(Worker& worker)
{
    if (std::exchange(worker.hasPlace, false))
        --_running;
}

void WorkerPool::giveBack(Worker& worker)
{
    std::lock_guard<std::mutex> lock(_mutex);
    freePlace(worker);
}

unsigned WorkerPool::writeOff(Worker& worker)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (!_stopping) // join() looks at the list without the lock
        joinReturned();
    try
    {
        add();
        worker.isWrittenOff = true;
        ++_writtenOff;
        freePlace(worker);
    }
    catch (const std::system_error&)
    {
        // The system has no thread to spare: the others carry on, and this one does when it comes back.
    }
    return _writtenOff;
}

WorkerPool::Load WorkerPool::load()
{
    std::lock_guard<std::mutex> lock(_mutex);
    return {_tasks.size(), _running, _writtenOff};
}

void WorkerPool::run(Worker& self)
{
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;)
    {
        _wake.wait(lock, [this] { return !_tasks.empty() || _stopping; });
        if (_tasks.empty())
            return;
        Task task = std::move(_tasks.front());
        _tasks.pop_front();
        self.hasPlace = true;
        ++_running;
        lock.unlock();
        task(self);
        task = nullptr;
        lock.lock();
        if (self.isWrittenOff)
        {
            --_writtenOff;
            self.hasReturned = true;
            return;
        }
        freePlace(self);
    }
}

} // namespace cimd
