// Opening the listening socket.
#include "agent/http/ListenSocket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <system_error>

namespace cimd
{

namespace
{

[[noreturn]] void fail(const std::string& url, const char* step)
{
    throw std::system_error(errno, std::generic_category(), "cannot listen on " + url + ": " + step);
}

std::string withBrackets(const std::string& address)
{
    return address.find(':') != std::string::npos ? '[' + address + ']' : address;
}

std::string peerName(const sockaddr* address, socklen_t size)
{
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(address, size, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) !=
        0)
        return "unknown";
    return withBrackets(host) + ":" + port;
}

std::string withoutBrackets(const std::string& address)
{
    const bool hasBrackets = address.size() > 2 && address.front() == '[' && address.back() == ']';
    return hasBrackets ? address.substr(1, address.size() - 2) : address;
}

std::uint16_t boundPort(int fd)
{
    sockaddr_in6 bound{}; // has the port where that of IPv4 has it
    socklen_t size = sizeof bound;
    getsockname(fd, reinterpret_cast<sockaddr*>(&bound), &size);
    return ntohs(bound.sin6_port);
}

} // namespace

ListenSocket::ListenSocket(const std::string& address, std::uint16_t port, unsigned backlog, bool isTls)
    : _port(port), _isTls(isTls), _address(withoutBrackets(address))
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    addrinfo* found = nullptr;
    const int rc = getaddrinfo(_address.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (rc != 0)
        throw std::runtime_error("cannot listen on \"" + address +
                                 "\": not an IPv4 or IPv6 address: " + gai_strerror(rc));
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> info(found, &freeaddrinfo);
    _fd = FileDescriptor(socket(info->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (_fd.get() < 0)
        fail(url(), "socket");
    const int on = 1;
    if (setsockopt(_fd.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0)
        fail(url(), "SO_REUSEADDR");
    if (info->ai_family == AF_INET6 && setsockopt(_fd.get(), IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on) != 0)
        fail(url(), "IPV6_V6ONLY");
    if (bind(_fd.get(), info->ai_addr, info->ai_addrlen) != 0)
        fail(url(), "bind");
    if (listen(_fd.get(), static_cast<int>(backlog)) != 0)
        fail(url(), "listen");
    _port = boundPort(_fd.get());
}

FileDescriptor ListenSocket::accept(std::string& peer) const
{
    sockaddr_storage storage{};
    auto* const address = reinterpret_cast<sockaddr*>(&storage);
    socklen_t size = sizeof storage;
    FileDescriptor client(accept4(_fd.get(), address, &size, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (client.get() < 0)
        return client;
    const int on = 1;
    setsockopt(client.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    peer = peerName(address, size);
    return client;
}

bool ListenSocket::hasClient() const
{
    pollfd client{_fd.get(), POLLIN, 0};
    return poll(&client, 1, 0) > 0;
}

bool ListenSocket::isLoopbackAddress(const std::string& address)
{
    const std::string bare = withoutBrackets(address);
    in_addr v4{};
    in6_addr v6{};
    if (inet_pton(AF_INET, bare.c_str(), &v4) == 1)
        return ntohl(v4.s_addr) >> IN_CLASSA_NSHIFT == IN_LOOPBACKNET;
    return inet_pton(AF_INET6, bare.c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6);
}

std::string ListenSocket::url() const
{
    return (_isTls ? "https://" : "http://") + withBrackets(_address) + ":" + std::to_string(_port);
}

} // namespace cimd
