// What the system counts of this process.
#ifndef AGENT_METRICS_PROCESS_H
#define AGENT_METRICS_PROCESS_H

#include "agent/metrics/open_metrics.h"

namespace cimd
{

// Under the names that programs of all kinds give these numbers (Prometheus, "Writing client libraries").
void writeProcess(OpenMetricsWriter& out);

} // namespace cimd

#endif
