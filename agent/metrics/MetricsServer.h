// The HTTP server of the metrics, beside that of the CIM operations.
#ifndef AGENT_METRICS_METRICSSERVER_H
#define AGENT_METRICS_METRICSSERVER_H

#include "agent/metrics/MetricsHandler.h"
#include "agent/ops/LogInGate.h"

#include <chrono>
#include <optional>
#include <vector>

namespace cimd
{

// Has connections and threads of its own, a few of each: a scrape takes none from CIM clients, and finds one
// when these have all of theirs.
class MetricsServer
{
  public:
    // Throws std::runtime_error when the server cannot start. `authenticator` and what `parts` names outlive
    // the object. Nobody has to log in on loopback, nor where there is no authenticator.
    MetricsServer(const AgentParts& parts,
                  ListenSocket socket,
                  ServerOptions options,
                  Authenticator* authenticator);

    // See HttpServer. Also false when a provider has not come back from a scrape that has ended.
    bool stop(std::chrono::milliseconds grace);
    void setTls(const TlsIdentity& identity) { _server->setTls(identity); }

  private:
    MetricsHandler _handler;
    std::optional<LogInGate> _gate;
    std::optional<HttpServer> _server;
};

} // namespace cimd

#endif
