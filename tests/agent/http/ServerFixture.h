// A server whose handler is a function of the test.
#ifndef TESTS_AGENT_HTTP_SERVERFIXTURE_H
#define TESTS_AGENT_HTTP_SERVERFIXTURE_H

#include "agent/http/HttpServer.h"
#include "tests/agent/http/FunctionHandler.h"
#include "tests/agent/http/RawClient.h"

#include <condition_variable>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <string>

namespace cimd
{

constexpr std::chrono::minutes kLong{2};

// Where handlers wait for the test.
class Gate
{
  public:
    void wait()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        ++_waiting;
        _changed.notify_all();
        _changed.wait(lock, [this] { return _isOpen; });
    }

    // Returns once a handler waits.
    void awaitWaiting()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [this] { return _waiting != 0; });
    }

    void open()
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _isOpen = true;
        _changed.notify_all();
    }

  private:
    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _waiting = 0;
    bool _isOpen = false;
};

class ServerFixture : public ::testing::Test
{
  protected:
    // Starts the server with `limits`, which a test changes before.
    void start(FunctionHandler::Answer onRequest,
               OnHungWorkers onHungWorkers = {},
               const std::string& address = "127.0.0.1")
    {
        handler.onRequest = std::move(onRequest);
        std::vector<ListenSocket> sockets;
        port = sockets.emplace_back(address, 0, limits.backlog).port();
        ServerOptions options;
        options.spoolDirectory = spoolDirectory;
        options.onHungWorkers = std::move(onHungWorkers);
        server = std::make_unique<HttpServer>(handler, limits, std::move(sockets), std::move(options));
    }

    void TearDown() override
    {
        gate.open();
        server.reset(); // waits for the handlers
    }

    // What the server answers on a connection of its own.
    RawResponse ask(std::string_view bytes) { return RawClient(port).ask(bytes); }

    Limits limits;
    std::string spoolDirectory = testing::TempDir();
    Gate gate;
    FunctionHandler handler;
    std::uint16_t port = 0;
    std::unique_ptr<HttpServer> server;
};

} // namespace cimd

#endif
