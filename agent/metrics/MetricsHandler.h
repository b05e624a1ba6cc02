// GET /metrics.
#ifndef AGENT_METRICS_METRICSHANDLER_H
#define AGENT_METRICS_METRICSHANDLER_H

#include "agent/http/HttpHandler.h"
#include "agent/metrics/agent_metrics.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace cimd
{

// Answers one scrape at a time; another one waits for its turn. A scrape ends about when its scraper has lost
// patience: a class whose provider is not back by then costs its own samples only.
class MetricsHandler : public HttpHandler
{
  public:
    explicit MetricsHandler(const AgentParts& parts) : _parts(parts) {}

    Verdict refuse(const HttpRequest& head) override;
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override;

    // False when providers are not back by then from what scrapes have asked them.
    bool awaitProviders(LateReads::Time end) { return _late.awaitAll(end); }

  private:
    using Time = SwitchReader::Time;

    // The time of one scrape, if it comes.
    class Turn
    {
      public:
        Turn(MetricsHandler& handler, Time end);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        bool hasCome() const { return _hasCome; }

      private:
        MetricsHandler& _handler;
        bool _hasCome;
    };

    Time endOf(const HttpRequest& request) const;
    void scrape(const HttpRequest& request, Time end, HttpResponse& response, AnswerStream& stream);
    void logFaults(const std::vector<ClassRead>& reads);

    const AgentParts _parts;
    LateReads _late;
    std::mutex _mutex;
    std::condition_variable _free;
    bool _isBusy = false; // with a scrape, which alone uses what follows
    std::uint64_t _scrapes = 0;
    std::set<std::string> _faulty; // classes that could not be read last time
};

} // namespace cimd

#endif
