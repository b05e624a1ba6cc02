// The thread at the control socket.
#include "agent/control/ControlServer.h"

#include "agent/control/ControlStream.h"
#include "agent/log/log.h"

#include <cerrno>
#include <exception>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>

namespace cimd
{

namespace
{

constexpr std::chrono::seconds kPatience{2};
constexpr int kPause = 100; // ms

} // namespace

ControlServer::ControlServer(const ControlSocket& socket, std::vector<ControlCommand> commands)
    : _socket(socket), _commands(std::move(commands)), _stop(eventfd(0, EFD_CLOEXEC))
{
    if (_stop.get() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
    _thread = std::thread([this] { run(); });
}

ControlServer::~ControlServer()
{
    eventfd_write(_stop.get(), 1);
    _thread.join();
}

void ControlServer::run() const
{
    for (;;)
    {
        pollfd waiting[] = {{_socket.get(), POLLIN, 0}, {_stop.get(), POLLIN, 0}};
        if (poll(waiting, 2, -1) < 0 && errno != EINTR)
            return;
        if (waiting[1].revents != 0)
            return;
        const FileDescriptor client(accept4(_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (client.get() >= 0)
            serve(client.get());
        else if (errno != EAGAIN && errno != EINTR)
            poll(&waiting[1], 1, kPause); // no descriptor is free: the client waits for one, too
    }
}

void ControlServer::serve(int client) const
try
{
    const ControlStream stream(client, kPatience, _stop.get());
    std::string line;
    if (stream.readLine(line))
        stream.send(answerTo(line));
}
catch (const std::exception& error)
{
    log(LogLevel::Warning, "control", error.what());
}

std::string ControlServer::answerTo(const std::string& line) const
{
    std::string known;
    for (const ControlCommand& command : _commands)
    {
        if (command.name == line)
            return std::string(kControlDone) + '\n' + command.answer();
        known += ' ' + std::string(command.name);
    }
    return "there is no such command; there are:" + known + '\n';
}

} // namespace cimd
