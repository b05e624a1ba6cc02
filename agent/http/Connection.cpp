// The phases of a connection and their deadlines.
#include "agent/http/Connection.h"

#include "agent/http/joined_write.h"
#include "agent/http/received_bytes.h"
#include "agent/log/log.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace cimd
{

namespace
{

constexpr unsigned kRequestTimeout = 408;
constexpr unsigned kUnavailable = 503;

std::string peerName(const sockaddr* address)
{
    if (address == nullptr)
        return "unknown";
    const bool ipv6 = address->sa_family == AF_INET6;
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(address,
                    ipv6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in),
                    host,
                    sizeof host,
                    port,
                    sizeof port,
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return "unknown";
    return (ipv6 ? "[" + std::string(host) + "]" : host) + ":" + port;
}

} // namespace

Connection::Connection(MHD_Connection* connection, const Limits& limits, BodyBudget& bodies, SpoolArea& area)
    : _connection(connection), _limits(limits), _bodies(bodies), _area(area)
{
    if (const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD))
        _fd = info->connect_fd;
    if (const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION))
    {
        _isPlain = false;
        _handshake.emplace(static_cast<gnutls_session_t>(info->tls_session));
    }
    const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    _peer = peerName(info != nullptr ? info->client_addr : nullptr);
}

Exchange& Connection::begin()
{
    auto exchange = std::make_shared<Exchange>(_limits, _bodies, _area, *this);
    std::lock_guard<std::mutex> lock(_mutex);
    if (_phase == Phase::Head)
        _phase = Phase::Body;
    if (_begun == Alarm::kNever)
        _begun = Alarm::Clock::now();
    _exchange = std::move(exchange);
    return *_exchange;
}

bool Connection::complete()
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_phase == Phase::Body)
        _phase = Phase::Answer;
    return _phase == Phase::Answer;
}

void Connection::beginStream()
{
    joinNextWrites(_fd);
}

void Connection::end(const std::string& reason)
{
    // The reply may be using this connection until it is closed, and calls it with its lock held.
    _exchange->reply.close(reason);
    const std::uint64_t before = received();
    std::lock_guard<std::mutex> lock(_mutex);
    _exchange.reset();
    _begun = Alarm::kNever;
    _before = before;
    if (_phase != Phase::Cut)
        _phase = Phase::Head;
}

void Connection::closed()
{
    const bool hasReceived = received() > 1; // the end counts as one
    const std::string fault = _handshake ? _handshake->fault(hasReceived) : std::string();
    if (!fault.empty()) // those who only look whether the port is open do it all the time
        log(hasReceived ? LogLevel::Warning : LogLevel::Info, "tls", _peer + ": no TLS connection: " + fault);
    std::lock_guard<std::mutex> lock(_mutex);
    _handshake.reset();
    forgetWrites(_fd);
    _phase = Phase::Cut;
    _fd = -1;
}

std::uint64_t Connection::received() const
{
    return receivedBytes(_fd).value_or(0);
}

// Often enough to notice the beginning of a request early, seldom enough not to matter.
Connection::Time Connection::lookAgain(Time now) const
{
    return now + std::chrono::milliseconds(_limits.requestSeconds) / 4;
}

Connection::Time Connection::check(Time now)
{
    std::unique_lock<std::mutex> lock(_mutex);
    switch (_phase)
    {
    case Phase::Cut:
        return Alarm::kNever;
    case Phase::Answer:
    {
        const std::shared_ptr<Exchange> current = _exchange;
        lock.unlock();
        return current->reply.check(now);
    }
    case Phase::Head:
        if (!_isOpen && (!_handshake || _handshake->isDone()))
        {
            _isOpen = true;
            if (_handshake) // what it took is no part of a request
            {
                _before = received();
                _begun = Alarm::kNever;
            }
        }
        if (_begun == Alarm::kNever && received() != _before)
            _begun = now;
        if (_begun == Alarm::kNever)
            return lookAgain(now);
        [[fallthrough]];
    case Phase::Body:
        break;
    }
    if (now < _begun + _limits.requestSeconds)
        return _begun + _limits.requestSeconds;
    refuse(kRequestTimeout, "Request Timeout");
    return Alarm::kNever;
}

void Connection::stop()
{
    std::unique_lock<std::mutex> lock(_mutex);
    const std::shared_ptr<Exchange> current = _exchange;
    if (_phase == Phase::Body)
        refuse(kUnavailable, "Service Unavailable");
    lock.unlock();
    if (current)
        current->reply.release();
}

void Connection::abandon()
{
    std::unique_lock<std::mutex> lock(_mutex);
    const std::shared_ptr<Exchange> current = _exchange;
    lock.unlock();
    if (current)
        current->reply.close("the server is stopping");
}

// Answers a request that has not arrived whole. The library has no way to, so the bytes go straight to the
// socket; nothing else is being sent in these phases. With TLS there is only the end of the connection.
void Connection::refuse(unsigned status, const char* reason)
{
    log(LogLevel::Warning,
        "http",
        _peer + ": HTTP " + std::to_string(status) + ": the request is incomplete");
    if (_isPlain)
    {
        const std::string text = "HTTP/1.1 " + std::to_string(status) + " " + reason +
                                 "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
        send(_fd, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }
    cut();
}

void Connection::cut()
{
    if (_phase != Phase::Cut)
        shutdown(_fd, SHUT_RDWR); // the I/O thread sees the end of the connection and does the rest
    _phase = Phase::Cut;
}

void Connection::pause()
{
    MHD_suspend_connection(_connection);
}

void Connection::goOn()
{
    MHD_resume_connection(_connection);
}

void Connection::drop()
{
    std::lock_guard<std::mutex> lock(_mutex);
    cut();
}

} // namespace cimd
