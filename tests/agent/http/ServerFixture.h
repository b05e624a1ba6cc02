// A server whose handler is a function of the test.
#ifndef TESTS_AGENT_HTTP_SERVERFIXTURE_H
#define TESTS_AGENT_HTTP_SERVERFIXTURE_H

#include "agent/http/HttpServer.h"
#include "tests/agent/http/RawClient.h"

#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace cimd
{

class FunctionHandler : public HttpHandler
{
  public:
    using Answer = std::function<HttpResponse(HttpRequest&, AnswerStream&)>;

    Verdict refuse(const HttpRequest& head) override { return verdict ? verdict(head) : Verdict(); }
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override
    {
        return onRequest(request, stream);
    }

    std::function<Verdict(const HttpRequest&)> verdict;
    Answer onRequest;
};

class ServerFixture : public ::testing::Test
{
  protected:
    // Starts the server with `limits`, which a test changes before.
    void start(FunctionHandler::Answer onRequest, OnHungWorkers onHungWorkers = {})
    {
        handler.onRequest = std::move(onRequest);
        std::vector<ListenSocket> sockets;
        port = sockets.emplace_back("127.0.0.1", 0, limits.backlog).port();
        ServerOptions options;
        options.spoolDirectory = spoolDirectory;
        options.onHungWorkers = std::move(onHungWorkers);
        server = std::make_unique<HttpServer>(handler, limits, std::move(sockets), std::move(options));
    }

    Limits limits;
    std::string spoolDirectory = testing::TempDir();
    FunctionHandler handler;
    std::uint16_t port = 0;
    std::unique_ptr<HttpServer> server;
};

} // namespace cimd

#endif
