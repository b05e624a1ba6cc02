// Calls of the system.
#include "agent/http/Epoll.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

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

Epoll::Epoll() : _fd(epoll_create1(EPOLL_CLOEXEC))
{
    if (_fd.get() < 0)
        fail("cannot serve");
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

} // namespace cimd
