// The Unix socket at which the running simulated switch takes commands.
#include "simulator/control/ControlSocket.h"

#include "simulator/control/Verb.h"
#include "simulator/control/protocol.h"
#include "simulator/engine/Engine.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>

namespace simulator
{
namespace
{

constexpr std::size_t kMostClients = 16;
constexpr std::chrono::milliseconds kLook{200}; // after a watcher that is gone
constexpr timeval kPatience{10, 0}; // with a client that does not say its command, or does not listen

[[noreturn]] void fail(const std::string& step)
{
    throw std::system_error(errno, std::generic_category(), step);
}

// What a process that crashed left behind goes; a socket at which somebody listens does not.
void makeRoom(const std::string& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return;
    if (!S_ISSOCK(status.st_mode))
        throw std::runtime_error("there is something else in the socket's place");
    try
    {
        connectTo(path);
    }
    catch (const std::system_error& error)
    {
        if (error.code().value() != ECONNREFUSED)
            throw;
        ::unlink(path.c_str());
        return;
    }
    throw std::runtime_error("another process listens there");
}

FileDescriptor listenAt(const std::string& path)
{
    makeRoom(path);
    const sockaddr_un address = addressOf(path);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // The file gets the mode of the socket: nobody else can connect at any moment.
    if (socket.get() < 0 || ::fchmod(socket.get(), 0600) != 0)
        fail("cannot make a socket");
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail("cannot bind");
    if (::listen(socket.get(), 8) != 0)
        fail("cannot listen");
    return socket;
}

// The words of a command; nothing when the client does not end it in time, or says too much.
bool readCommand(int socket, Words& words)
{
    std::string bytes;
    char chunk[4096];
    for (;;)
    {
        const ssize_t got = ::recv(socket, chunk, sizeof chunk, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 || bytes.size() + static_cast<std::size_t>(got) > kMostCommandBytes)
            return false;
        if (got == 0)
            break;
        bytes.append(chunk, static_cast<std::size_t>(got));
    }
    for (std::size_t begin = 0; begin < bytes.size();)
    {
        const std::size_t end = bytes.find('\0', begin);
        if (end == std::string::npos)
            return false;
        words.push_back(bytes.substr(begin, end - begin));
        begin = end + 1;
    }
    return true;
}

std::string answerTo(const Words& command)
{
    const auto answer = [](Answer status, const std::string& text)
    { return static_cast<char>(status) + text; };
    try
    {
        return answer(Answer::done, runCommand(command));
    }
    catch (const UsageError& error)
    {
        return answer(Answer::usage, std::string(error.what()) + '\n');
    }
    catch (const std::exception& error)
    {
        return answer(Answer::refused, std::string(error.what()) + '\n');
    }
}

// Whether both sides of a connection have ended it.
bool isOver(int socket)
{
    pollfd events{socket, 0, 0};
    return ::poll(&events, 1, 0) != 0 && (events.revents & (POLLHUP | POLLERR)) != 0;
}

// Tells of events to the end of the connection.
void watch(int socket)
{
    EventFeed::Watch events(Engine::instance().feed);
    std::string text(1, static_cast<char>(Answer::done));
    while (!isOver(socket) && sendAll(socket, text))
        text = events.next(kLook);
}

} // namespace

// The connections that are being served.
class ControlSocket::Clients
{
  public:
    ~Clients()
    {
        {
            const std::lock_guard<std::mutex> guard(_mutex);
            for (const Client& client : _clients)
                ::shutdown(client.socket.get(), SHUT_RDWR);
        }
        for (Client& client : _clients)
            client.thread.join();
    }

    void add(FileDescriptor socket)
    {
        forgetDone();
        const std::lock_guard<std::mutex> guard(_mutex);
        if (_clients.size() >= kMostClients)
            return; // who comes now finds the connection closed
        Client& client = _clients.emplace_back();
        client.socket = std::move(socket);
        client.thread = std::thread([this, &client] { serve(client); });
    }

  private:
    struct Client
    {
        FileDescriptor socket;
        std::thread thread;
        bool done = false; // the thread has nothing more to do than to end
    };

    void serve(Client& client)
    {
        const int socket = client.socket.get();
        ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
        ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
        Words command;
        if (!readCommand(socket, command))
            ; // nothing can be said to it
        else if (command == Words{std::string(kWatch)})
            watch(socket);
        else
            sendAll(socket, answerTo(command));
        ::shutdown(socket, SHUT_RDWR);
        const std::lock_guard<std::mutex> guard(_mutex);
        client.done = true;
    }

    void forgetDone()
    {
        std::list<Client> done;
        {
            const std::lock_guard<std::mutex> guard(_mutex);
            for (auto client = _clients.begin(); client != _clients.end();)
            {
                const auto next = std::next(client);
                if (client->done)
                    done.splice(done.end(), _clients, client);
                client = next;
            }
        }
        for (Client& client : done)
            client.thread.join();
    }

    std::mutex _mutex;
    std::list<Client> _clients;
};

ControlSocket::ControlSocket(const std::string& path)
    : _path(path), _listening(listenAt(path)), _stopped(::eventfd(0, EFD_CLOEXEC)),
      _clients(std::make_unique<Clients>())
{
    if (_stopped.get() < 0)
        fail("cannot make an event");
    _thread = std::thread([this] { serve(); });
}

ControlSocket::~ControlSocket()
{
    ::eventfd_write(_stopped.get(), 1);
    _thread.join();
    ::unlink(_path.c_str());
}

void ControlSocket::serve()
{
    for (;;)
    {
        pollfd events[] = {{_listening.get(), POLLIN, 0}, {_stopped.get(), POLLIN, 0}};
        if (::poll(events, std::size(events), -1) < 0 && errno != EINTR)
            return;
        if (events[1].revents != 0)
            return;
        if (events[0].revents == 0)
            continue;
        FileDescriptor socket(::accept4(_listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (socket.get() >= 0)
            _clients->add(std::move(socket));
    }
}

} // namespace simulator
