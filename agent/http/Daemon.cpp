// Starting libmicrohttpd, with TLS or without.
#include "agent/http/Daemon.h"

#include "agent/http/TlsHandshake.h"
#include "agent/log/log.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace cimd
{

namespace
{

// Older versions are broken; key exchange without forward secrecy would open recorded traffic to whoever gets
// the key later.
constexpr const char* kPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-RSA:%SERVER_PRECEDENCE";

// What libmicrohttpd has to say about connections is about clients that misbehave.
__attribute__((format(printf, 2, 0))) void logMessage(void*, const char* format, va_list arguments)
{
    TlsHandshake::noteAlerts();
    if (!logEnabled(LogLevel::Debug))
        return;
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    log(LogLevel::Debug, "http", text);
}

MHD_OptionItem number(MHD_OPTION option, std::size_t value)
{
    return {option, static_cast<std::intptr_t>(value), nullptr};
}

// The library takes it as a pointer to what it does not change.
MHD_OptionItem text(MHD_OPTION option, const char* value)
{
    return {option, 0, const_cast<char*>(value)};
}

} // namespace

Daemon::Daemon(ListenSocket socket,
               const TlsIdentity& tls,
               const Limits& limits,
               const DaemonCallbacks& callbacks)
{
    std::vector<MHD_OptionItem> options = {
        number(MHD_OPTION_CONNECTION_LIMIT, limits.connections),
        number(MHD_OPTION_PER_IP_CONNECTION_LIMIT, limits.connectionsPerAddress),
        number(MHD_OPTION_CONNECTION_MEMORY_LIMIT, limits.headBytes),
        number(MHD_OPTION_CONNECTION_TIMEOUT, limits.idleSeconds),
        number(MHD_OPTION_STRICT_FOR_CLIENT, 1),
    };
    if (socket.isTls())
    {
        options.push_back(text(MHD_OPTION_HTTPS_MEM_CERT, tls.certificate.c_str()));
        options.push_back(text(MHD_OPTION_HTTPS_MEM_KEY, tls.key.c_str()));
        options.push_back(text(MHD_OPTION_HTTPS_PRIORITIES, kPriorities));
    }
    options.push_back({MHD_OPTION_END, 0, nullptr});

    // Not epoll: libmicrohttpd uses it edge-triggered and misses the end of a connection that arrives
    // together with half a request, which then keeps its place until it has been idle for long enough.
    const unsigned flags = MHD_USE_POLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME | MHD_USE_ITC |
                           MHD_USE_ERROR_LOG | (socket.ipv6() ? unsigned{MHD_USE_IPv6} : 0U) |
                           (socket.isTls() ? unsigned{MHD_USE_TLS} : 0U);
    const std::string url = socket.url();
    _daemon = MHD_start_daemon(flags,
                               socket.port(),
                               nullptr,
                               nullptr,
                               callbacks.onRequest,
                               callbacks.self,
                               MHD_OPTION_EXTERNAL_LOGGER, // first, so that it hears of faulty options
                               &logMessage,
                               nullptr,
                               MHD_OPTION_LISTEN_SOCKET,
                               socket.release(),
                               MHD_OPTION_NOTIFY_CONNECTION,
                               callbacks.onConnection,
                               callbacks.self,
                               MHD_OPTION_NOTIFY_COMPLETED,
                               callbacks.onCompleted,
                               callbacks.self,
                               MHD_OPTION_ARRAY,
                               options.data(),
                               MHD_OPTION_END);
    if (_daemon == nullptr)
        throw std::runtime_error("cannot serve " + url + ": libmicrohttpd refused its settings");
}

Daemon::~Daemon()
{
    MHD_stop_daemon(_daemon);
}

void Daemon::quiesce()
{
    const MHD_socket listening = MHD_quiesce_daemon(_daemon);
    if (listening == MHD_INVALID_SOCKET)
        return;
    // The daemon's thread may be about to use the number, which must not become somebody else's before it has
    // ended. A socket that nobody can connect to takes its place.
    _retired = FileDescriptor(listening);
    const FileDescriptor deaf(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (deaf.get() < 0 || dup3(deaf.get(), listening, O_CLOEXEC) < 0)
        log(LogLevel::Warning,
            "http",
            "clients can connect until the stop: " + std::generic_category().message(errno));
}

} // namespace cimd
