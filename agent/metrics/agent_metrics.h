// The agent's part of a scrape: what it counted of its own work.
#ifndef AGENT_METRICS_AGENT_METRICS_H
#define AGENT_METRICS_AGENT_METRICS_H

#include "agent/http/HttpServer.h"
#include "agent/metrics/SwitchMetrics.h"
#include "agent/metrics/open_metrics.h"
#include "agent/providers/ProviderManager.h"
#include "agent/pull/Enumerations.h"
#include "agent/run/Counters.h"

#include <cstdint>
#include <vector>

namespace cimd
{

// Where the numbers are. All of it outlives whoever has this.
struct AgentParts
{
    const CimService& service;
    ProviderManager& providers;
    const Counters& counters;
    InFlight& inFlight;
    const Enumerations& enumerations;
    HttpServer& server; ///< of CIM operations
    const Limits& limits;
    std::uint32_t restarts = 0; ///< of the serving process, after crashes
};

// Counters begin at 0 when the serving process starts.
void writeAgentMetrics(OpenMetricsWriter& out, const AgentParts& parts);

// How the scrape itself went.
void writeScrape(OpenMetricsWriter& out, const std::vector<ClassRead>& reads);

} // namespace cimd

#endif
