// The CIM-XML side of the HTTP server: checks heads, reads messages, runs operations, logs each of them.
#ifndef AGENT_OPS_FRONTEND_H
#define AGENT_OPS_FRONTEND_H

#include "agent/http/HttpHandler.h"
#include "agent/log/XmlTrace.h"
#include "agent/ops/Operations.h"
#include "agent/run/Counters.h"

namespace cimd
{

// Who is told of each request; null for nobody.
struct Watch
{
    InFlight* inFlight = nullptr;
    Counters* counters = nullptr;
    XmlTrace* trace = nullptr;
};

class FrontEnd : public HttpHandler
{
  public:
    // `service` and what `watch` points to outlive the object. Large results that wait to be pulled go to
    // files in `spoolDirectory`.
    FrontEnd(const CimService& service,
             const Limits& limits,
             const Watch& watch = {},
             std::string spoolDirectory = "/tmp")
        : _operations(service, limits, std::move(spoolDirectory)), _limits(limits), _watch(watch)
    {
    }

    Verdict refuse(const HttpRequest& head) override;
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override;

    // Those that clients have open.
    Enumerations& enumerations() { return _operations.enumerations(); }

  private:
    HttpResponse operate(HttpRequest& request, AnswerStream& stream);

    Operations _operations;
    const Limits _limits;
    const Watch _watch;
};

} // namespace cimd

#endif
