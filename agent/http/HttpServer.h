// The HTTP/1.1 server: connections on an I/O thread, requests answered on a bounded worker pool.
#ifndef AGENT_HTTP_HTTPSERVER_H
#define AGENT_HTTP_HTTPSERVER_H

#include "agent/auth/TlsIdentity.h"
#include "agent/http/HttpHandler.h"
#include "agent/http/ListenSocket.h"
#include "agent/http/WorkerPool.h"
#include "agent/http/connection_lines.h"
#include "agent/limits/Limits.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace cimd
{

// Called when more operations than Limits::hungWorkers have not come back from their providers: the process
// should end, for it will not get well. Comes from a thread of the server, which waits.
using OnHungWorkers = std::function<void()>;

struct ServerOptions
{
    TlsIdentity tls = {};                ///< counts for TLS sockets
    std::string spoolDirectory = "/tmp"; ///< for what slow clients have not taken
    OnHungWorkers onHungWorkers = {};
};

// What a server is doing at a moment, and what it did since the start.
struct ServerState
{
    std::map<std::string, std::size_t> connections; ///< by what they are doing; all that there is to do
    ConnectionCounts clients;                       ///< the same by address, but for what nobody does
    std::map<unsigned, std::uint64_t> answers;      ///< by HTTP status
    std::map<std::string, std::uint64_t> refusals;  ///< connections and requests, by reason
    WorkerPool::Load workers;
};

// Listens from construction to stop(). Connections are kept alive and may be pipelined.
class HttpServer
{
  public:
    // Throws std::runtime_error when the server cannot start. `handler` outlives the server.
    HttpServer(HttpHandler& handler,
               const Limits& limits,
               std::vector<ListenSocket> sockets,
               ServerOptions options = {});
    // Stops, waiting for a running handler however long it takes.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    // Refuses new connections, lets every request whose head has arrived be answered, and closes. A request
    // that comes on a kept connection meanwhile is answered 503.
    // @return false when a handler was still running after `grace`; the server is then still usable for that
    // handler and can only be destroyed once it returns.
    bool stop(std::chrono::milliseconds grace);

    // Connections from now on have this identity; those that there are keep theirs. Throws std::runtime_error
    // for one that cannot be used. From any thread but the server's.
    void setTls(const TlsIdentity& identity);

    // From any thread but the server's.
    ServerState state();

  private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace cimd

#endif
