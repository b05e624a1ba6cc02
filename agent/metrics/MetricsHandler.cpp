// One scrape from request to answer.
#include "agent/metrics/MetricsHandler.h"

#include "agent/log/log.h"
#include "agent/metrics/process.h"

#include <utility>

namespace cimd
{

namespace
{

constexpr const char* kPath = "/metrics";
constexpr std::chrono::seconds kPatience{10}; // what scrapers wait by default

HttpResponse plain(unsigned status, const char* text)
{
    return {status, {{"Content-Type", "text/plain"}}, text};
}

std::string nameSpaceOf(const ProviderManager& providers)
{
    return providers.nameSpaces().empty() ? "root/interop" : providers.nameSpaces().front();
}

} // namespace

MetricsHandler::Turn::Turn(MetricsHandler& handler) : _handler(handler)
{
    std::unique_lock<std::mutex> lock(handler._mutex);
    _hasCome = handler._free.wait_for(lock, kPatience, [&] { return !handler._isBusy; });
    if (_hasCome)
        handler._isBusy = true;
}

MetricsHandler::Turn::~Turn()
{
    if (!_hasCome)
        return;
    {
        const std::lock_guard<std::mutex> lock(_handler._mutex);
        _handler._isBusy = false;
    }
    _handler._free.notify_one();
}

Verdict MetricsHandler::refuse(const HttpRequest& head)
{
    if (head.target != kPath)
        return {plain(kNotFound, "Metrics are at /metrics.\n")};
    if (head.method == "GET")
        return {};
    HttpResponse response = plain(kMethodNotAllowed, "Metrics are there to GET.\n");
    response.headers.emplace_back("Allow", "GET");
    return {response};
}

HttpResponse MetricsHandler::answer(HttpRequest& request, AnswerStream& stream)
{
    const Turn turn(*this);
    if (!turn.hasCome())
    {
        HttpResponse response = plain(kUnavailable, "Another scrape has not ended yet.\n");
        response.headers.emplace_back("Retry-After", "10");
        return response;
    }
    HttpResponse response;
    response.headers.emplace_back("Content-Type", kOpenMetricsType);
    scrape(request, response, stream);
    return response;
}

void MetricsHandler::scrape(const HttpRequest& request, HttpResponse& response, AnswerStream& stream)
{
    OpenMetricsWriter out(response, stream);
    InFlight::Entry entry(&_parts.inFlight, "Scrape", request.peer);
    writeAgentMetrics(out, _parts);
    writeProcess(out);
    const SwitchReader reader(
        _parts.service, nameSpaceOf(_parts.providers), {request.user, request.peer, ""});
    const std::vector<ClassRead> reads = SwitchMetrics(reader, out, entry).write();
    logFaults(reads);
    writeScrape(out, reads);
    out.single({"cimd_scrapes", MetricType::Counter, "", "Scrapes until this one."}, _scrapes++);
    out.end();
}

// When a class begins and ceases to be readable, so that the log does not grow with each scrape.
void MetricsHandler::logFaults(const std::vector<ClassRead>& reads)
{
    for (const ClassRead& read : reads)
    {
        if (read.fault.empty() && _faulty.erase(read.className) != 0)
            log(LogLevel::Warning, "metrics", read.className + " can be read again");
        if (!read.fault.empty() && _faulty.insert(read.className).second)
            log(LogLevel::Warning,
                "metrics",
                read.className + " has no metrics until it can be read: " + read.fault);
    }
}

} // namespace cimd
