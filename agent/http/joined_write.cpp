// Two things that libmicrohttpd does when it writes, and offers no way to change: it sends the head of an
// answer whose body it fetches by itself, at once, in a segment of its own; and it sends the head of an
// answer twice when it does not accept a request's Host or Content-Length (0.9.75 does, without TLS). So this
// program has its own send() and sendmsg(), which every library in the process uses, that for TLS included:
// they do what the system's do, but for the sockets that were named and for doubled heads.
#include "agent/http/joined_write.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
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

// As the system's sendmsg().
ssize_t transmit(int fd, const msghdr& message, int flags)
{
    mmsghdr sent{message, 0};
    return sendmmsg(fd, &sent, 1, flags) == 1 ? static_cast<ssize_t>(sent.msg_len) : -1;
}

// Keeps a message back.
ssize_t hold(Join& join, const msghdr& message)
{
    for (size_t i = 0; i < message.msg_iovlen; ++i)
        join.first.append(static_cast<const char*>(message.msg_iov[i].iov_base), message.msg_iov[i].iov_len);
    return static_cast<ssize_t>(join.first.size());
}

// Sends what waits and as much of a message as goes with it; counts only the latter, as the caller does.
ssize_t sendBoth(std::vector<Join>::iterator join, const msghdr& message, int flags)
{
    std::vector<iovec> parts{{join->first.data(), join->first.size()}};
    parts.insert(parts.end(), message.msg_iov, message.msg_iov + message.msg_iovlen);
    msghdr both = message;
    both.msg_iov = parts.data();
    both.msg_iovlen = parts.size();
    const ssize_t sent = transmit(join->fd, both, flags);
    if (sent < 0)
        return sent;
    const auto ofFirst = std::min(static_cast<size_t>(sent), join->first.size());
    const ssize_t ofMessage = sent - static_cast<ssize_t>(ofFirst);
    join->first.erase(0, ofFirst);
    if (join->first.empty())
        joins.erase(join);
    if (ofMessage > 0)
        return ofMessage;
    errno = EAGAIN;
    return -1;
}

// Bytes of the first of two heads that are to be sent with a body; 0 if there is one.
std::size_t superfluousHead(const msghdr& message)
{
    if (message.msg_iovlen != 2)
        return 0;
    const std::string_view heads(static_cast<const char*>(message.msg_iov[0].iov_base),
                                 message.msg_iov[0].iov_len);
    const std::string_view status = heads.substr(0, heads.find('\n') + 1);
    const std::size_t half = heads.size() / 2;
    const bool isTwice = heads.size() % 2 == 0 && status.substr(0, 5) == "HTTP/" &&
                         heads.substr(half, status.size()) == status;
    return isTwice ? half : 0;
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

extern "C" __attribute__((visibility("default"))) ssize_t sendmsg(int fd, const msghdr* message, int flags)
{
    using namespace cimd;
    const auto join = find(fd);
    if (join != joins.end())
        return join->first.empty() ? hold(*join, *message) : sendBoth(join, *message, flags);
    const std::size_t skipped = superfluousHead(*message);
    if (skipped == 0)
        return transmit(fd, *message, flags);
    iovec parts[2];
    std::copy_n(message->msg_iov, 2, parts);
    parts[0].iov_base = static_cast<char*>(parts[0].iov_base) + skipped;
    parts[0].iov_len -= skipped;
    msghdr single = *message;
    single.msg_iov = parts;
    const ssize_t sent = transmit(fd, single, flags);
    return sent < 0 ? sent : static_cast<ssize_t>(skipped) + sent;
}

extern "C" __attribute__((visibility("default"))) ssize_t
send(int fd, const void* data, size_t size, int flags)
{
    if (cimd::find(fd) == cimd::joins.end())
        return sendto(fd, data, size, flags, nullptr, 0);
    iovec part{const_cast<void*>(data), size};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    return sendmsg(fd, &message, flags);
}
