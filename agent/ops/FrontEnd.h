// The CIM-XML side of the HTTP server: checks heads, reads messages, runs operations, logs each of them.
#pragma once

#include "agent/http/HttpServer.h"
#include "agent/ops/Operations.h"

namespace cimd
{

class FrontEnd : public HttpHandler
{
  public:
    /** `service` outlives the object. */
    FrontEnd(CimService& service, const Limits& limits) : _operations(service, limits), _limits(limits) {}

    std::optional<HttpResponse> refuse(const HttpRequest& head) override;
    HttpResponse answer(HttpRequest& request) override;

  private:
    Operations _operations;
    const Limits _limits;
};

} // namespace cimd
