// libmicrohttpd sends the head of an answer whose body it fetches by itself, at once, in a segment of its
// own, and offers no way to change that. So this program has its own send(), which every library in the
// process uses: it does what the system's does, but for the sockets that were named to it.
#include "agent/http/JoinedWrite.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <sys/socket.h>
#include <sys/uio.h>
#include <vector>

namespace cimd
{

namespace
{

struct Join
{
    int fd;
    std::string first; // what waits; empty until it is there
};

thread_local std::vector<Join> joins; // of the connections that are between head and first chunk: few

std::vector<Join>::iterator find(int fd)
{
    return std::find_if(joins.begin(), joins.end(), [fd](const Join& join) { return join.fd == fd; });
}

/** Sends what waits and as much of `data` as goes with it; counts only the latter, as the caller does. */
ssize_t sendBoth(std::vector<Join>::iterator join, const void* data, size_t size, int flags)
{
    iovec parts[] = {{join->first.data(), join->first.size()}, {const_cast<void*>(data), size}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    const ssize_t sent = sendmsg(join->fd, &message, flags);
    if (sent < 0)
        return sent;
    const auto ofFirst = std::min(static_cast<size_t>(sent), join->first.size());
    const ssize_t ofData = sent - static_cast<ssize_t>(ofFirst);
    join->first.erase(0, ofFirst);
    if (join->first.empty())
        joins.erase(join);
    if (ofData > 0)
        return ofData;
    errno = EAGAIN;
    return -1;
}

} // namespace

void joinNextWrites(int fd)
{
    if (find(fd) == joins.end())
        joins.push_back({fd, {}});
}

void forgetWrites(int fd)
{
    const auto join = find(fd);
    if (join != joins.end())
        joins.erase(join);
}

} // namespace cimd

extern "C" __attribute__((visibility("default"))) ssize_t
send(int fd, const void* data, size_t size, int flags)
{
    using namespace cimd;
    const auto join = find(fd);
    if (join == joins.end())
        return sendto(fd, data, size, flags, nullptr, 0);
    if (!join->first.empty())
        return sendBoth(join, data, size, flags);
    join->first.assign(static_cast<const char*>(data), size);
    return static_cast<ssize_t>(size);
}
