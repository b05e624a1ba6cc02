// Calls of the system.
#include "agent/http/Epoll.h"

#include "agent/log/log.h"

#include <algorithm>
#include <cerrno>
#include <future>
#include <memory>
#include <sys/eventfd.h>
#include <system_error>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kMostAtOnce = 64;

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

Epoll::Epoll() : _fd(epoll_create1(EPOLL_CLOEXEC)), _wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (_fd.get() < 0)
        fail("cannot serve");
    if (_wakeUp.get() < 0)
        fail("cannot make an event");
    add(_wakeUp.get(), kTasks, EPOLLIN);
}

void Epoll::add(int fd, std::uint64_t id, std::uint32_t events)
{
    epoll_event event{};
    event.events = events;
    event.data.u64 = id;
    if (epoll_ctl(_fd.get(), EPOLL_CTL_ADD, fd, &event) != 0)
        fail("cannot watch a socket");
}

void Epoll::remove(int fd)
{
    epoll_ctl(_fd.get(), EPOLL_CTL_DEL, fd, nullptr);
}

const std::vector<epoll_event>& Epoll::wait(int milliseconds)
{
    _events.resize(kMostAtOnce);
    const int count = epoll_wait(_fd.get(), _events.data(), kMostAtOnce, milliseconds);
    _events.resize(static_cast<std::size_t>(std::max(count, 0)));
    return _events;
}

void Epoll::runTasks()
{
    std::vector<std::function<void()>> tasks;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        eventfd_t count = 0;
        if (eventfd_read(_wakeUp.get(), &count) < 0 && errno != EAGAIN)
            log(LogLevel::Error,
                "http",
                "cannot read the wake-up: " + std::generic_category().message(errno));
        tasks.swap(_tasks);
    }
    for (const auto& task : tasks)
        task();
}

void Epoll::post(std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _tasks.push_back(std::move(task));
    if (_tasks.size() == 1 && eventfd_write(_wakeUp.get(), 1) < 0)
        log(LogLevel::Error, "http", "cannot wake the I/O thread: " + std::generic_category().message(errno));
}

void Epoll::postAndWait(const std::function<void()>& task)
{
    const auto done = std::make_shared<std::packaged_task<void()>>(task); // may outlast the wait
    std::future<void> isDone = done->get_future();
    post([done] { (*done)(); });
    isDone.get();
}

} // namespace cimd
