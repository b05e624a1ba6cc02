// One scrape from request to answer.
#include "agent/metrics/MetricsHandler.h"

#include "agent/log/log.h"
#include "agent/metrics/process.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace cimd
{

namespace
{

constexpr const char* kPath = "/metrics";
constexpr const char* kPatienceHeader = "X-Prometheus-Scrape-Timeout-Seconds";
constexpr double kPatience = 10; // seconds: what scrapers wait that do not say so
constexpr double kUsed = 0.9;    // of it; the rest is for the way

HttpResponse plain(unsigned status, const char* text)
{
    return {status, {{"Content-Type", "text/plain"}}, text};
}

std::string nameSpaceOf(const ProviderManager& providers)
{
    return providers.nameSpaces().empty() ? "root/interop" : providers.nameSpaces().front();
}

double patienceOf(const HttpRequest& request)
{
    double patience = kPatience;
    if (const std::string* const text = request.header(kPatienceHeader))
        std::from_chars(text->data(), text->data() + text->size(), patience);
    return patience > 0 ? patience : kPatience;
}

} // namespace

MetricsHandler::Turn::Turn(MetricsHandler& handler, Time end) : _handler(handler)
{
    std::unique_lock<std::mutex> lock(handler._mutex);
    _hasCome = handler._free.wait_until(lock, end, [&] { return !handler._isBusy; });
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

// Before the server takes the scrape for one that hangs, too.
MetricsHandler::Time MetricsHandler::endOf(const HttpRequest& request) const
{
    const std::chrono::duration<double> most = _parts.limits.operationSeconds;
    const double seconds = kUsed * std::min(patienceOf(request), most.count());
    return std::chrono::steady_clock::now() +
           std::chrono::duration_cast<Time::duration>(std::chrono::duration<double>(seconds));
}

HttpResponse MetricsHandler::answer(HttpRequest& request, AnswerStream& stream)
{
    const Time end = endOf(request);
    const Turn turn(*this, end);
    if (!turn.hasCome())
    {
        HttpResponse response = plain(kUnavailable, "Another scrape has not ended yet.\n");
        response.headers.emplace_back("Retry-After", "10");
        return response;
    }
    HttpResponse response;
    response.headers.emplace_back("Content-Type", kOpenMetricsType);
    scrape(request, end, response, stream);
    return response;
}

void MetricsHandler::scrape(const HttpRequest& request,
                            Time end,
                            HttpResponse& response,
                            AnswerStream& stream)
{
    OpenMetricsWriter out(response, stream);
    writeAgentMetrics(out, _parts);
    writeProcess(out);
    const SwitchReader reader({_parts.service, _parts.inFlight, _late},
                              nameSpaceOf(_parts.providers),
                              {request.user, request.peer, ""},
                              end);
    const std::vector<ClassRead> reads = SwitchMetrics(reader, out).write();
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
