// A listener over plain sockets.
#include "tests/delivery/Test_Listener.h"

#include <arpa/inet.h>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr std::chrono::minutes kPatience{2};

} // namespace

Test_Listener::Reply Test_Listener::answer(int status, const std::string& body, const std::string& header)
{
    return {"HTTP/1.1 " + std::to_string(status) + " Said\r\n" + header +
            "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body};
}

Test_Listener::Reply Test_Listener::accept(const Request&)
{
    return answer(200,
                  "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                  "PROTOCOLVERSION=\"1.0\"><SIMPLEEXPRSP><EXPMETHODRESPONSE NAME=\"ExportIndication\"/>"
                  "</SIMPLEEXPRSP></MESSAGE></CIM>",
                  "Content-Type: application/xml\r\nCIMExport: MethodResponse\r\n");
}

Test_Listener::Test_Listener(Handler handler) : _handler(std::move(handler))
{
    _listening = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (_listening < 0 || bind(_listening, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        listen(_listening, SOMAXCONN) != 0 ||
        getsockname(_listening, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no listener");
    _port = ntohs(address.sin_port);
    _thread = std::thread([this] { run(); });
}

Test_Listener::~Test_Listener()
{
    shutdown(_listening, SHUT_RDWR);
    _thread.join();
    close(_listening);
}

std::string Test_Listener::url(const std::string& credentials) const
{
    return "http://" + credentials + "127.0.0.1:" + std::to_string(_port) + "/listener";
}

std::vector<Test_Listener::Request> Test_Listener::waitFor(std::size_t count) const
{
    std::unique_lock<std::mutex> lock(_lock);
    if (!_changed.wait_for(lock, kPatience, [&] { return _requests.size() >= count; }))
        throw std::runtime_error(std::to_string(_requests.size()) + " requests came, not " +
                                 std::to_string(count));
    return _requests;
}

void Test_Listener::waitFor(const std::string& text) const
{
    std::size_t seen = 0;
    const auto isThere = [&]
    {
        for (; seen < _requests.size(); ++seen)
            if (_requests[seen].body.find(text) != text.npos)
                return true;
        return false;
    };
    std::unique_lock<std::mutex> lock(_lock);
    if (!_changed.wait_for(lock, kPatience, isThere))
        throw std::runtime_error("no request came with " + text);
}

void Test_Listener::run()
{
    for (int taken = 0;;)
    {
        std::vector<pollfd> waiting{{_listening, POLLIN, 0}};
        for (const auto& [socket, connection] : _connections)
            waiting.push_back({socket, POLLIN, 0});
        poll(waiting.data(), waiting.size(), -1);
        for (const pollfd& one : waiting)
        {
            const auto place = _connections.find(one.fd);
            if (one.revents != 0 && place != _connections.end() && !receive(place->first, place->second))
            {
                close(place->first);
                _connections.erase(place);
            }
        }
        if (waiting[0].revents == 0)
            continue;
        const int socket = ::accept(_listening, nullptr, nullptr);
        if (socket < 0)
            break;
        _connections[socket] = {taken++, ""};
    }
    for (const auto& [socket, connection] : _connections)
        close(socket);
}

bool Test_Listener::receive(int socket, Connection& connection)
{
    char buffer[65536];
    const ssize_t size = recv(socket, buffer, sizeof buffer, 0);
    if (size <= 0)
        return false;
    std::string& received = connection.received;
    received.append(buffer, static_cast<std::size_t>(size));
    for (;;)
    {
        const std::size_t end = received.find("\r\n\r\n");
        if (end == received.npos)
            return true;
        const std::size_t length = std::stoul(received.substr(received.find("Content-Length: ") + 16));
        if (received.size() < end + 4 + length)
            return true;
        Request request{received.substr(0, end + 2), received.substr(end + 4, length), connection.number};
        received.erase(0, end + 4 + length);
        const Reply reply = _handler(request);
        {
            const std::lock_guard<std::mutex> lock(_lock);
            _requests.push_back(std::move(request));
        }
        _changed.notify_all();
        const ssize_t sent = send(socket, reply.text.data(), reply.text.size(), MSG_NOSIGNAL);
        if (sent != static_cast<ssize_t>(reply.text.size()) || reply.closes)
            return false;
    }
}
