// What a command and its answer look like on the control socket, for both sides.
#include "simulator/control/protocol.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>

namespace simulator
{

sockaddr_un addressOf(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        throw std::runtime_error("the path of a socket has 1 to " +
                                 std::to_string(sizeof address.sun_path - 1) + " bytes");
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

FileDescriptor connectTo(const std::string& path)
{
    const sockaddr_un address = addressOf(path);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.get() < 0 ||
        ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot connect");
    return socket;
}

void sendCommand(int socket, const std::vector<std::string>& words)
{
    std::string bytes;
    for (const std::string& word : words)
        bytes.append(word).push_back('\0');
    if (bytes.size() > kMostCommandBytes)
        throw std::runtime_error("the command is too long");
    if (!sendAll(socket, bytes) || ::shutdown(socket, SHUT_WR) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot send");
}

} // namespace simulator
