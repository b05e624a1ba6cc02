// A handler that is a function of the test.
#ifndef TESTS_AGENT_HTTP_FUNCTIONHANDLER_H
#define TESTS_AGENT_HTTP_FUNCTIONHANDLER_H

#include "agent/http/HttpHandler.h"

#include <functional>

namespace cimd
{

class FunctionHandler : public HttpHandler
{
  public:
    using Answer = std::function<HttpResponse(HttpRequest&, AnswerStream&)>;

    Verdict refuse(const HttpRequest& head) override { return verdict ? verdict(head) : Verdict(); }
    std::optional<HttpResponse> vouch(const HttpRequest& head) override
    {
        return voucher ? voucher(head) : std::nullopt;
    }
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override
    {
        return onRequest(request, stream);
    }

    std::function<Verdict(const HttpRequest&)> verdict;
    std::function<std::optional<HttpResponse>(const HttpRequest&)> voucher;
    Answer onRequest;
};

} // namespace cimd

#endif
