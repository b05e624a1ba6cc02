// Reading and writing with a deadline.
#include "agent/control/ControlStream.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace cimd
{

bool ControlStream::wait(short events) const
{
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(_deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0)
        return false;
    pollfd waiting[] = {{_socket, events, 0}, {_stop, POLLIN, 0}};
    const int found = poll(waiting, 2, static_cast<int>(left.count()));
    return found > 0 ? waiting[1].revents == 0 : found < 0 && errno == EINTR;
}

bool ControlStream::send(std::string_view bytes) const
{
    while (!bytes.empty())
    {
        const ssize_t sent = ::send(_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno != EAGAIN && errno != EINTR)
            return false;
        else if (!wait(POLLOUT))
            return false;
    }
    return true;
}

bool ControlStream::readMore(std::string& bytes, bool& isOver) const
{
    for (;;)
    {
        char chunk[4096];
        const ssize_t got = recv(_socket, chunk, sizeof chunk, 0);
        if (got > 0)
        {
            bytes.append(chunk, static_cast<std::size_t>(got));
            return true;
        }
        isOver = got == 0;
        if (isOver || (errno != EAGAIN && errno != EINTR) || !wait(POLLIN))
            return false;
    }
}

bool ControlStream::readLine(std::string& line) const
{
    bool isOver = false;
    std::size_t end = std::string::npos;
    while (end == std::string::npos)
    {
        if (line.size() > kMostCommandBytes || !readMore(line, isOver))
            return false;
        end = line.find('\n');
    }
    line.resize(end);
    return end <= kMostCommandBytes;
}

bool ControlStream::readAll(std::string& bytes) const
{
    bool isOver = false;
    while (readMore(bytes, isOver))
        ;
    return isOver;
}

} // namespace cimd
