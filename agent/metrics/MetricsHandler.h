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

// Answers one scrape at a time; another one waits a while for its turn.
class MetricsHandler : public HttpHandler
{
  public:
    explicit MetricsHandler(const AgentParts& parts) : _parts(parts) {}

    Verdict refuse(const HttpRequest& head) override;
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override;

  private:
    // The time of one scrape, if it comes.
    class Turn
    {
      public:
        explicit Turn(MetricsHandler& handler);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        bool hasCome() const { return _hasCome; }

      private:
        MetricsHandler& _handler;
        bool _hasCome;
    };

    void scrape(const HttpRequest& request, HttpResponse& response, AnswerStream& stream);
    void logFaults(const std::vector<ClassRead>& reads);

    const AgentParts _parts;
    std::mutex _mutex;
    std::condition_variable _free;
    bool _isBusy = false; // with a scrape, which alone uses what follows
    std::uint64_t _scrapes = 0;
    std::set<std::string> _faulty; // classes that could not be read last time
};

} // namespace cimd

#endif
