// The sockets that cimd listens on, opened before anything else.
#ifndef AGENT_LISTENING_H
#define AGENT_LISTENING_H

#include "agent/http/ListenSocket.h"
#include "agent/settings/Settings.h"

#include <optional>
#include <string>
#include <vector>

namespace cimd
{

struct Sockets
{
    std::vector<ListenSocket> operations; ///< of CIM: HTTP, HTTPS or both
    std::optional<ListenSocket> metrics;

    // "http://127.0.0.1:5988, https://127.0.0.1:5989, metrics on http://127.0.0.1:9464/metrics"
    std::string urls() const;
};

// Throws StartError, saying which option is to blame; also when somebody elsewhere could reach what nobody
// has to log in for. Metrics elsewhere than on loopback come over HTTPS if there is a certificate.
Sockets openSockets(const Settings& settings);

} // namespace cimd

#endif
