// Tasks and the wake-up.
#include "agent/http/TaskQueue.h"

#include "agent/log/log.h"

#include <cerrno>
#include <cstdint>
#include <future>
#include <memory>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace cimd
{

TaskQueue::TaskQueue() : _wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (_wakeUp.get() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
}

void TaskQueue::run()
{
    std::vector<std::function<void()>> tasks;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        std::uint64_t count = 0;
        if (::read(_wakeUp.get(), &count, sizeof count) < 0 && errno != EAGAIN)
            log(LogLevel::Error,
                "http",
                "cannot read the wake-up: " + std::generic_category().message(errno));
        tasks.swap(_tasks);
    }
    for (const auto& task : tasks)
        task();
}

void TaskQueue::post(std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _tasks.push_back(std::move(task));
    const std::uint64_t one = 1;
    if (_tasks.size() == 1 && ::write(_wakeUp.get(), &one, sizeof one) < 0)
        log(LogLevel::Error, "http", "cannot wake the I/O thread: " + std::generic_category().message(errno));
}

void TaskQueue::postAndWait(const std::function<void()>& task)
{
    const auto done = std::make_shared<std::promise<void>>(); // set_value() may outlast the wait
    std::future<void> isDone = done->get_future();
    post(
        [task, done]
        {
            task();
            done->set_value();
        });
    isDone.wait();
}

} // namespace cimd
