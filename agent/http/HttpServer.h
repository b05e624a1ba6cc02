// The HTTP/1.1 server: connections on an I/O thread of libmicrohttpd, requests answered on a bounded worker
// pool.
#pragma once

#include "agent/Limits.h"
#include "agent/http/ListenSocket.h"
#include "agent/http/Message.h"

#include <chrono>
#include <memory>
#include <optional>

namespace cimd
{

/** What the server asks of the layer above it. Both members are called from several threads at once. */
class HttpHandler
{
  public:
    virtual ~HttpHandler() = default;

    /**
     * Looks at a request whose head has arrived and whose body has not. Runs on an I/O thread and must not
     * wait. A response given here is final: the body is read and dropped.
     */
    virtual std::optional<HttpResponse> refuse(const HttpRequest& head) = 0;

    /** Answers a complete request; runs on a worker. May take the body out of it. */
    virtual HttpResponse answer(HttpRequest& request) = 0;
};

/** Listens from construction to stop(). Connections are kept alive and may be pipelined. */
class HttpServer
{
  public:
    /** Throws std::runtime_error when the server cannot start. `handler` outlives the server. */
    HttpServer(HttpHandler& handler, const Limits& limits, ListenSocket socket);
    /** Stops, waiting for a running handler however long it takes. */
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /**
     * Refuses new connections, lets every request whose head has arrived be answered, and closes. A request
     * that comes on a kept connection meanwhile is answered 503.
     * @return false when a handler was still running after `grace`; the server is then still usable for that
     * handler and can only be destroyed once it returns.
     */
    bool stop(std::chrono::milliseconds grace);

  private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace cimd
