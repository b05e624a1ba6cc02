// Making the socket, and asking at it.
#include "agent/control/ControlSocket.h"

#include "agent/control/ControlStream.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>

namespace cimd
{

namespace
{

constexpr int kBacklog = 4;
constexpr std::chrono::seconds kPatience{10};

[[noreturn]] void fail(const std::string& path, const std::string& step)
{
    throw std::system_error(errno, std::generic_category(), path + ": " + step);
}

sockaddr_un addressOf(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw std::runtime_error(path + ": the path of a socket has at most " +
                                 std::to_string(sizeof address.sun_path - 1) + " bytes");
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

FileDescriptor makeSocket(const std::string& path)
{
    FileDescriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (made.get() < 0)
        fail(path, "cannot make a socket");
    return made;
}

bool isConnected(const FileDescriptor& made, const sockaddr_un& address)
{
    return connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// What a process that was killed left behind goes; a socket at which somebody listens does not.
void makeRoom(const std::string& path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0)
        return;
    if (!S_ISSOCK(status.st_mode))
        throw std::runtime_error(path + ": there is something else in the socket's place");
    if (isConnected(makeSocket(path), addressOf(path)) || errno != ECONNREFUSED)
        throw std::runtime_error(path + ": another process listens there");
    unlink(path.c_str());
}

FileDescriptor listenAt(const std::string& path)
{
    const sockaddr_un address = addressOf(path);
    makeRoom(path);
    FileDescriptor made = makeSocket(path);
    // The file gets the mode of the socket: nobody else can connect at any moment.
    if (fchmod(made.get(), 0600) != 0 ||
        bind(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail(path, "cannot make the socket");
    if (listen(made.get(), kBacklog) != 0)
        fail(path, "cannot listen");
    return made;
}

} // namespace

ControlSocket::ControlSocket(std::string path)
    : _path(std::move(path)), _listening(listenAt(_path)), _maker(getpid())
{
}

ControlSocket::~ControlSocket()
{
    if (getpid() == _maker)
        unlink(_path.c_str());
}

std::string askControl(const std::string& path, const std::string& command)
{
    const FileDescriptor asking = makeSocket(path);
    if (!isConnected(asking, addressOf(path)))
        fail(path, "cannot ask cimd");
    ControlStream stream(asking.get(), kPatience);
    std::string answer;
    if (!stream.send(command + '\n') || !stream.readAll(answer) || answer.empty())
        throw std::runtime_error(path + ": cimd does not answer");
    const std::size_t end = answer.find('\n');
    if (answer.substr(0, end) != kControlDone)
        throw std::runtime_error(path + ": cimd says: " + answer.substr(0, end));
    return answer.substr(end + 1);
}

} // namespace cimd
