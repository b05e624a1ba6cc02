// What the serving process does on signals.
#ifndef AGENT_WAITING_H
#define AGENT_WAITING_H

#include "agent/auth/Authenticator.h"
#include "agent/http/HttpServer.h"
#include "agent/metrics/MetricsServer.h"
#include "agent/providers/ProviderManager.h"
#include "agent/pull/Enumerations.h"
#include "agent/run/Counters.h"
#include "agent/run/signals.h"
#include "agent/serving.h"

#include <optional>

namespace cimd
{

// What signals have an effect on.
struct Servers
{
    HttpServer& operations;
    std::optional<MetricsServer>& metrics;
    std::optional<Authenticator>& authenticator;
    ProviderManager& providers;
    const Counters& counters;
    Enumerations& enumerations;
};

// Lets whoever started cimd know that clients are served: after the start, and again after a reload. True for
// the first time, among all serving processes.
bool sayReady(const Setting& setting);

// Returns when a signal says to stop; does what other signals ask for.
void waitForStop(SignalSet& signals, const Setting& setting, Servers servers);

} // namespace cimd

#endif
