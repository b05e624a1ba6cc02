// Setting up the server of the metrics.
#include "agent/metrics/MetricsServer.h"

#include <utility>

namespace cimd
{

namespace
{

// One scrape runs, one waits for it or is logged in, and some more may come: scrapers are few.
Limits limitsOf(const Limits& agent)
{
    constexpr unsigned kWorkers = 2;
    constexpr unsigned kWaiting = 4;
    constexpr unsigned kConnections = 16;
    constexpr std::size_t kBodyBytes = 1024; // of a GET
    Limits limits = agent;
    limits.workers = kWorkers;
    limits.queuedRequests = kWaiting;
    limits.connections = kConnections;
    limits.connectionsPerAddress = kConnections;
    limits.bodyBytes = kBodyBytes;
    limits.allBodiesBytes = kConnections * kBodyBytes;
    return limits;
}

} // namespace

MetricsServer::MetricsServer(const AgentParts& parts,
                             ListenSocket socket,
                             ServerOptions options,
                             Authenticator* authenticator)
    : _handler(parts)
{
    const Limits limits = limitsOf(parts.limits);
    if (authenticator != nullptr && !socket.isLoopback())
        _gate.emplace(_handler, *authenticator, limits);
    HttpHandler& outer = _gate ? static_cast<HttpHandler&>(*_gate) : _handler;
    std::vector<ListenSocket> sockets;
    sockets.push_back(std::move(socket));
    _server.emplace(outer, limits, std::move(sockets), std::move(options));
}

bool MetricsServer::stop(std::chrono::milliseconds grace)
{
    const auto end = std::chrono::steady_clock::now() + grace;
    return _server->stop(grace) && _handler.awaitProviders(end);
}

} // namespace cimd
