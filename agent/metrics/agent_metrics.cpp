// The families of the agent itself.
#include "agent/metrics/agent_metrics.h"

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace cimd
{

namespace
{

Decimal seconds(std::chrono::microseconds time)
{
    return {static_cast<std::uint64_t>(time.count()), kMicro};
}

std::string labelled(const char* name, std::string_view value)
{
    std::string labels;
    appendLabel(labels, name, value);
    return labels;
}

// The sample of one family for each row.
template <class Row>
struct Column
{
    MetricFamily family;
    std::function<Decimal(const Row&)> value;
};

void writeOperations(OpenMetricsWriter& out, const std::vector<Counters::ClassRow>& rows)
{
    const auto labelsOf = [](const Counters::ClassRow& row)
    {
        std::string labels = labelled("operation", row.row.operation);
        appendLabel(labels, "class", row.className);
        return labels;
    };
    out.begin(
        {"cimd_operation_seconds",
         MetricType::Histogram,
         "seconds",
         "CIM operations that were answered, and the time that they took. The class is - where there is "
         "none and (unknown) where the repository lacks it."});
    for (const Counters::ClassRow& row : rows)
    {
        const std::string labels = labelsOf(row);
        std::uint64_t within = 0;
        for (std::size_t step = 0; step < Counters::kTimeSteps.size(); ++step)
        {
            within += row.row.steps[step];
            std::string limit;
            appendDecimal(limit, seconds(Counters::kTimeSteps[step]));
            limit.erase(limit.find_last_not_of('0') + 1);
            limit += limit.back() == '.' ? "0" : "";
            std::string bucket = labels;
            appendLabel(bucket, "le", limit);
            out.part("_bucket", bucket, {within});
        }
        out.part("_bucket", labels + ",le=\"+Inf\"", {row.row.calls});
        out.part("_count", labels, {row.row.calls});
        out.part("_sum", labels, seconds(row.row.total));
    }
    const Column<Counters::ClassRow> columns[] = {
        {{"cimd_operation_errors", kCounter, "", "CIM operations that were answered with an error."},
         [](const Counters::ClassRow& row) { return Decimal{row.row.errors}; }},
        {{"cimd_operation_results", kCounter, "", "Instances, paths, classes and qualifiers in answers."},
         [](const Counters::ClassRow& row) { return Decimal{row.row.results}; }},
        {{"cimd_operation_answer_bytes", kCounter, "bytes", "Bodies of answers to CIM operations."},
         [](const Counters::ClassRow& row) { return Decimal{row.row.bytes}; }},
    };
    for (const auto& column : columns)
    {
        out.begin(column.family);
        for (const Counters::ClassRow& row : rows)
            out.sample(labelsOf(row), column.value(row));
    }
}

void writeServer(OpenMetricsWriter& out, const ServerState& state, const Limits& limits)
{
    out.single({"cimd_workers", kGauge, "", "Threads that run operations, as --max-workers says."},
               limits.workers);
    out.single({"cimd_workers_busy", kGauge, "", "Threads that have an operation."}, state.workers.running);
    out.single({"cimd_workers_hung",
                kGauge,
                "",
                "Threads that were replaced, since their provider did not come back in time."},
               state.workers.hung);
    out.single({"cimd_requests_waiting", kGauge, "", "Requests that wait for a worker."},
               state.workers.waiting);
    out.begin({"cimd_connections", kGauge, "", "Connections of CIM clients, by what they are doing."});
    for (const auto& [name, count] : state.connections)
        out.sample(labelled("state", name), {count});
    out.single({"cimd_connections_limit", kGauge, "", "Connections that can be, as --max-connections says."},
               limits.connections);
    out.begin({"cimd_http_answers", kCounter, "", "Answers to CIM clients, by HTTP status."});
    for (const auto& [status, count] : state.answers)
        out.sample(labelled("code", std::to_string(status)), {count});
    out.begin(
        {"cimd_http_refusals", kCounter, "", "Requests and connections that were turned away, by reason."});
    for (const auto& [reason, count] : state.refusals)
        out.sample(labelled("reason", reason), {count});
}

void writeIndications(OpenMetricsWriter& out, const ProviderManager& providers)
{
    struct Known
    {
        const char* name; // that the library gives the counter
        const char* label;
        MetricFamily family;
    };
    static constexpr Known kKnown[] = {
        {"delivered",
         "",
         {"cimd_indications_delivered",
          kCounter,
          "",
          "Indications that listeners took, one for each listener."}},
        {"lost",
         "reason",
         {"cimd_indications_lost", kCounter, "", "Indications that were given up, by reason."}},
        {"queued", "", {"cimd_indications_queued", kGauge, "", "Indications that wait for their listeners."}},
        {"queued_bytes",
         "",
         {"cimd_indications_queued_bytes", kGauge, "bytes", "Messages that wait for their listeners."}},
        {"events_waiting",
         "kind",
         {"cimd_switch_events_waiting",
          kGauge,
          "",
          "Events of the switch that no indication was made of yet."}},
        {"events_lost",
         "kind",
         {"cimd_switch_events_lost", kCounter, "", "Events of the switch for which there was no room."}},
    };
    std::map<std::string, std::map<std::string, std::uint64_t>> values; // summed up over the libraries
    providers.indicationCounters([&](const std::string& name, const std::string& label, std::uint64_t value)
                                 { values[name][label] += value; });
    for (const Known& known : kKnown)
    {
        out.begin(known.family);
        for (const auto& [label, value] : values[known.name])
            out.sample(*known.label != '\0' ? labelled(known.label, label) : "", {value});
    }
}

} // namespace

void writeAgentMetrics(OpenMetricsWriter& out, const AgentParts& parts)
{
    out.begin({"cimd_build", MetricType::Info, "", "The agent."});
    out.sample(labelled("version", CIMD_VERSION), {1});
    out.single({"cimd_restarts",
                kCounter,
                "",
                "Times that a serving process took the place of another, which had crashed."},
               parts.restarts);
    writeOperations(out, parts.counters.rows());
    writeServer(out, parts.server.state(), parts.limits);
    out.single(
        {"cimd_enumerations_open", kGauge, "", "Enumerations that clients have not pulled to the end."},
        parts.enumerations.size());
    out.single({"cimd_enumerations_file_bytes", kGauge, "bytes", "Results in files that wait to be pulled."},
               parts.enumerations.area().used());
    writeIndications(out, parts.providers);
}

void writeScrape(OpenMetricsWriter& out, const std::vector<ClassRead>& reads)
{
    const Column<ClassRead> columns[] = {
        {{"cimd_scrape_class_success", kGauge, "", "Whether this scrape could read a class: 1, or 0."},
         [](const ClassRead& read) { return Decimal{read.fault.empty() ? 1U : 0U}; }},
        {{"cimd_scrape_class_seconds", kGauge, "seconds", "The time that reading a class took this scrape."},
         [](const ClassRead& read) { return seconds(read.time); }},
    };
    for (const auto& column : columns)
    {
        out.begin(column.family);
        for (const ClassRead& read : reads)
            out.sample(labelled("class", read.className), column.value(read));
    }
}

} // namespace cimd
