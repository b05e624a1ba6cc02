// Opening the sockets, as the options say.
#include "agent/listening.h"

#include "agent/log/log.h"
#include "agent/named_files.h"
#include "agent/settings/StartError.h"

#include <cstdint>
#include <stdexcept>
#include <system_error>

namespace cimd
{

namespace
{

// Where a socket listens, and the options that say so.
struct Place
{
    const char* addressOption;
    std::string address;
    const char* portOption;
    std::uint16_t port;
};

ListenSocket socketAt(const Settings& settings, const Place& place, bool isTls)
try
{
    return ListenSocket(place.address, place.port, settings.options().limits.backlog, isTls);
}
catch (const std::system_error& error)
{
    const bool isPortToBlame = error.code() == std::errc::address_in_use ||
                               error.code() == std::errc::permission_denied; // below 1024
    throw StartError(settings.place(isPortToBlame ? place.portOption : place.addressOption) + ": " +
                     error.what());
}
catch (const std::exception& error)
{
    throw StartError(settings.place(place.addressOption) + ": " + error.what());
}

// Nobody opens a switch by accident, or sends a password unaware that it can be read.
void checkAccess(const Settings& settings, const ListenSocket& socket, const Place& place)
{
    const Options& options = settings.options();
    if (socket.isLoopback())
        return;
    checkUsersAreKnown(settings, place.addressOption, place.address);
    if (options.passwordFile && !socket.isTls())
        log(LogLevel::Warning,
            "auth",
            settings.place(place.portOption) + ": passwords come over HTTP, readable on the way" +
                (options.certificate ? "; --no-http takes them over HTTPS only" : ""));
}

} // namespace

std::string Sockets::urls() const
{
    std::string urls;
    for (const ListenSocket& socket : operations)
        urls += (urls.empty() ? "" : ", ") + socket.url();
    return metrics ? urls + ", metrics on " + metrics->url() + "/metrics" : urls;
}

Sockets openSockets(const Settings& settings)
{
    const Options& options = settings.options();
    Sockets sockets;
    const auto add = [&](const Place& place, bool isTls)
    {
        sockets.operations.push_back(socketAt(settings, place, isTls));
        checkAccess(settings, sockets.operations.back(), place);
    };
    if (options.isPlainServed)
        add({"listen", options.address, "port", options.port}, false);
    if (options.certificate)
        add({"listen", options.address, "tls-port", options.tlsPort}, true);
    if (options.metricsPort)
    {
        const Place place{"metrics-listen", options.metricsAddress, "metrics-port", *options.metricsPort};
        const bool isTls = options.certificate && !ListenSocket::isLoopbackAddress(place.address);
        sockets.metrics = socketAt(settings, place, isTls);
        checkAccess(settings, *sockets.metrics, place);
    }
    return sockets;
}

} // namespace cimd
