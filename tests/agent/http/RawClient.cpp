// Sockets and a minimal reader of HTTP responses.
#include "tests/agent/http/RawClient.h"

#include "agent/cim/CimName.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <utility>

namespace cimd
{
namespace
{

constexpr long kPatienceSeconds = 60;

FileDescriptor connectTo(std::uint16_t port, bool ipv6)
{
    FileDescriptor fd(socket(ipv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    v4.sin_port = htons(port);
    v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    v6.sin6_port = htons(port);
    v6.sin6_addr = in6addr_loopback;
    const auto* address =
        ipv6 ? reinterpret_cast<const sockaddr*>(&v6) : reinterpret_cast<const sockaddr*>(&v4);
    if (connect(fd.get(), address, ipv6 ? sizeof v6 : sizeof v4) != 0)
        return FileDescriptor();
    const int on = 1;
    const timeval patience{kPatienceSeconds, 0};
    setsockopt(fd.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(fd.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    return fd;
}

} // namespace

std::string RawResponse::header(std::string_view name) const
{
    std::string_view rest = head;
    while (!rest.empty())
    {
        const std::size_t end = rest.find("\r\n");
        const std::string_view line = rest.substr(0, end);
        const std::size_t colon = line.find(": ");
        if (colon != std::string_view::npos && equalNoCase(line.substr(0, colon), name))
            return std::string(line.substr(colon + 2));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 2);
    }
    return {};
}

RawClient::RawClient(std::uint16_t port, bool ipv6) : _fd(connectTo(port, ipv6))
{
    if (_fd.get() < 0)
        throw std::runtime_error("cannot connect");
}

void RawClient::send(std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t sent = ::send(_fd.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            throw std::runtime_error("the server does not read on");
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void RawClient::endSending()
{
    shutdown(_fd.get(), SHUT_WR);
}

bool RawClient::fill()
{
    char bytes[65536];
    const ssize_t got = recv(_fd.get(), bytes, sizeof bytes, 0);
    if (got > 0)
        _buffer.append(bytes, static_cast<std::size_t>(got));
    else if (got < 0 && errno == EAGAIN)
        throw std::runtime_error("no answer in time");
    return got > 0;
}

RawResponse RawClient::receive()
{
    RawResponse response;
    std::size_t end = 0;
    while ((end = _buffer.find("\r\n\r\n")) == std::string::npos)
        if (!fill())
            return response;
    response.head = _buffer.substr(0, end);
    _buffer.erase(0, end + 4);
    response.status = std::stoi(response.head.substr(response.head.find(' ') + 1));
    if (response.status == 100)
        return response;
    if (response.header("Transfer-Encoding") == "chunked")
    {
        receiveChunks(response);
        return response;
    }
    const std::string length = response.header("Content-Length");
    response.isComplete = take(length.empty() ? 0 : std::stoul(length), response.body);
    return response;
}

void RawClient::receiveChunks(RawResponse& response)
{
    std::string line;
    while (takeLine(line))
    {
        const std::size_t size = std::stoul(line, nullptr, 16);
        if (size == 0)
        {
            while (takeLine(line) && !line.empty())
                response.trailers += line + "\n";
            response.isComplete = true;
            return;
        }
        if (!take(size, response.body) || !takeLine(line))
            return;
    }
}

bool RawClient::take(std::size_t bytes, std::string& to)
{
    while (_buffer.size() < bytes && fill())
    {
    }
    const std::size_t taken = std::min(bytes, _buffer.size());
    to.append(_buffer, 0, taken);
    _buffer.erase(0, taken);
    return taken == bytes;
}

bool RawClient::takeLine(std::string& to)
{
    std::size_t end = 0;
    while ((end = _buffer.find("\r\n")) == std::string::npos)
        if (!fill())
            return false;
    to = _buffer.substr(0, end);
    _buffer.erase(0, end + 2);
    return true;
}

bool RawClient::hears(std::chrono::milliseconds within)
{
    pollfd source{_fd.get(), POLLIN, 0};
    return poll(&source, 1, static_cast<int>(within.count())) > 0;
}

std::string RawClient::receiveOnce()
{
    fill();
    return std::exchange(_buffer, {});
}

void RawClient::awaitClose()
{
    while (fill())
        _buffer.clear();
}

bool canConnect(std::uint16_t port)
{
    return connectTo(port, false).get() >= 0;
}

std::string post(std::string_view body, std::string_view headers)
{
    std::string request = "POST /cimom HTTP/1.1\r\nHost: switch:5988\r\nContent-Type: application/xml\r\n";
    request += headers;
    request += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    request += body;
    return request;
}

} // namespace cimd
