// libmicrohttpd behind the server's interface.
//
// A request passes these stations: head complete (I/O thread: refuse() may end it), body read up to the limit
// (I/O thread), connection suspended and request handed to a worker, answer or its first chunk made (worker),
// connection resumed, answer queued and its body fetched piece by piece (I/O thread). An alarm thread ends
// what takes too long. Reply is where the threads meet.
#include "agent/http/HttpServer.h"

#include "agent/cim/CimError.h"
#include "agent/cim/CimName.h"
#include "agent/http/Connection.h"
#include "agent/http/Daemon.h"
#include "agent/http/WorkerPool.h"
#include "agent/http/cim_headers.h"
#include "agent/http/queue_response.h"
#include "agent/log/log.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <condition_variable>
#include <exception>
#include <list>
#include <microhttpd.h>
#include <mutex>
#include <stdexcept>

namespace cimd
{

namespace
{

constexpr unsigned kBadRequest = 400;
constexpr unsigned kContentTooLarge = 413;
constexpr unsigned kInternalError = 500;
constexpr unsigned kNotImplemented = 501;
constexpr unsigned kUnavailable = 503;
constexpr std::size_t kBelief = 8;

HttpResponse plain(unsigned status, const std::string& text)
{
    return {status, {{"Content-Type", "text/plain; charset=\"utf-8\""}}, text + "\n"};
}

// What the server itself will not take. Whoever watches the log learns which limit keeps whom out.
HttpResponse refused(const HttpRequest& request, unsigned status, const std::string& reason)
{
    log(LogLevel::Warning, "http", request.peer + ": HTTP " + std::to_string(status) + ": " + reason);
    return plain(status, reason);
}

HttpResponse tooLarge(const HttpRequest& request, std::size_t limit)
{
    return refused(request,
                   kContentTooLarge,
                   "The request is too large: more than " + std::to_string(limit) + " bytes.");
}

MHD_Result addHeader(void* to, MHD_ValueKind, const char* name, const char* value)
{
    static_cast<HttpRequest*>(to)->headers.emplace_back(name, value != nullptr ? value : "");
    return MHD_YES;
}

// Bytes of body that the head announces; 0 when it does not say.
std::size_t announcedBytes(const HttpRequest& request)
{
    const std::string* text = request.header(MHD_HTTP_HEADER_CONTENT_LENGTH);
    std::size_t bytes = 0;
    if (text != nullptr)
        std::from_chars(text->data(), text->data() + text->size(), bytes);
    return bytes;
}

// Whoever announces the length of a body in two ways may mean one thing to us and another to a proxy.
bool isAmbiguous(const HttpRequest& request)
{
    const auto saysLength = [](const HttpHeader& header)
    {
        return equalNoCase(header.first, MHD_HTTP_HEADER_CONTENT_LENGTH) ||
               equalNoCase(header.first, MHD_HTTP_HEADER_TRANSFER_ENCODING);
    };
    return std::count_if(request.headers.begin(), request.headers.end(), saysLength) > 1;
}

// Whether the end of the body cannot be told: it would be waited for until time is up.
bool isUnknownCoding(const HttpRequest& request)
{
    const std::string* coding = request.header(MHD_HTTP_HEADER_TRANSFER_ENCODING);
    return coding != nullptr && !equalNoCase(*coding, "chunked");
}

} // namespace

class HttpServer::Impl
{
  public:
    Impl(HttpHandler& handler, const Limits& limits, std::vector<ListenSocket> sockets, ServerOptions options)
        : _handler(handler), _limits(limits), _tls(std::move(options.tls)),
          _onHungWorkers(std::move(options.onHungWorkers)),
          _bodies(std::max(limits.allBodiesBytes, limits.bodyBytes)),
          _area(std::move(options.spoolDirectory), limits.unsentBytes, limits.answerFileBytes),
          _pool(limits.workers, limits.queuedRequests), _alarm([this](Time now) { return check(now); })
    {
        try
        {
            for (ListenSocket& socket : sockets)
                _daemons.emplace_back(std::move(socket),
                                      _tls,
                                      _limits,
                                      DaemonCallbacks{&onRequest, &onConnection, &onCompleted, this});
        }
        catch (...)
        {
            end(); // the first port may be serving when the second fails
            throw;
        }
    }

    ~Impl() { end(); }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    bool stop(std::chrono::milliseconds grace)
    {
        if (!_stopping.exchange(true))
            for (Daemon& daemon : _daemons)
                daemon.quiesce();
        for (const ConnectionPtr& connection : connections())
            connection->stop();
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, grace, [this] { return _exchanges == 0 && _running.empty(); });
        return _running.empty();
    }

  private:
    using Time = Alarm::Time;
    using ConnectionPtr = std::shared_ptr<Connection>;
    using ExchangePtr = std::shared_ptr<Exchange>;

    void end()
    {
        stop(std::chrono::milliseconds(0));
        _alarm.stop();
        for (const ConnectionPtr& connection : connections())
            connection->abandon(); // MHD_stop_daemon demands that none is suspended
        _pool.join();              // its tasks resume connections
        _daemons.clear();
    }

    static Connection& connectionOf(MHD_Connection* connection)
    {
        const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
        return **static_cast<ConnectionPtr*>(info->socket_context);
    }

    static void
    onConnection(void* self, MHD_Connection* connection, void** context, MHD_ConnectionNotificationCode event)
    {
        auto& server = *static_cast<Impl*>(self);
        if (event == MHD_CONNECTION_NOTIFY_STARTED)
        {
            auto* holder = new ConnectionPtr(
                std::make_shared<Connection>(connection, server._limits, server._bodies, server._area));
            *context = holder;
            std::lock_guard<std::mutex> lock(server._mutex);
            server._connections.push_back(*holder);
            server._alarm.ringBy(Alarm::Clock::now() + server._limits.requestSeconds / 4);
            return;
        }
        std::unique_ptr<ConnectionPtr> holder(static_cast<ConnectionPtr*>(*context));
        (*holder)->closed();
        std::lock_guard<std::mutex> lock(server._mutex);
        server._connections.remove(*holder);
    }

    static MHD_Result onRequest(void* self,
                                MHD_Connection* handle,
                                const char* url,
                                const char* method,
                                const char*,
                                const char* data,
                                size_t* size,
                                void** state)
    try
    {
        auto& server = *static_cast<Impl*>(self);
        Connection& connection = connectionOf(handle);
        if (*state == nullptr)
        {
            *state = &connection;
            return server.head(handle, connection, url, method);
        }
        Exchange& exchange = *connection.exchange();
        if (*size != 0)
        {
            const bool goesOn = server.body(exchange, data, *size);
            *size = 0;
            return goesOn ? MHD_YES : MHD_NO;
        }
        return exchange.isAnswering ? server.reply(handle, connection) : server.complete(handle, connection);
    }
    catch (...)
    {
        return MHD_NO; // closes the connection; nothing but lack of memory gets here
    }

    static void onCompleted(void* self, MHD_Connection* handle, void** state, MHD_RequestTerminationCode)
    {
        if (*state == nullptr)
            return;
        *state = nullptr;
        auto& server = *static_cast<Impl*>(self);
        setTimeout(handle, server._limits.idleSeconds);
        connectionOf(handle).end("the client has gone");
        server._alarm.ringBy(Alarm::Clock::now() + server._limits.requestSeconds / 4); // for the next one
        server.changed([&server] { --server._exchanges; });
    }

    static void setTimeout(MHD_Connection* handle, unsigned seconds)
    {
        MHD_set_connection_option(handle, MHD_CONNECTION_OPTION_TIMEOUT, seconds);
    }

    MHD_Result head(MHD_Connection* handle, Connection& connection, const char* url, const char* method)
    {
        changed([this] { ++_exchanges; }); // until the library says that it is over, however it ends
        Exchange& exchange = connection.begin();
        HttpRequest& request = exchange.request;
        request.method = method;
        request.target = url;
        request.peer = connection.peer();
        MHD_get_connection_values(handle, MHD_HEADER_KIND, &addHeader, &request);
        std::optional<HttpResponse>& refusal = exchange.refusal;
        if (_stopping)
            refusal = refused(request, kUnavailable, "The server is stopping.");
        else
        {
            Verdict verdict = _handler.refuse(request);
            refusal = std::move(verdict.response);
            exchange.bodyLimit = std::min(_limits.bodyBytes, verdict.bodyLimit);
            exchange.collect = std::move(verdict.collect);
        }
        const bool isEndless = isUnknownCoding(request);
        const bool ambiguous = isAmbiguous(request);
        if (ambiguous)
            refusal = refused(request, kBadRequest, "The length of the body is given more than once.");
        else if (isEndless)
            refusal = refused(request, kNotImplemented, "The only transfer coding is chunked.");
        const std::size_t announced = announcedBytes(request);
        if (!refusal && announced > exchange.bodyLimit)
            refusal = tooLarge(request, exchange.bodyLimit);
        // Whoever asks before sending the body, or would send more than we care or know to read, is answered
        // now.
        const bool asks = request.header(MHD_HTTP_HEADER_EXPECT) != nullptr;
        exchange.closes =
            refusal && (_stopping || asks || ambiguous || isEndless || announced > _limits.discardBytes);
        if (exchange.closes)
            return complete(handle, connection);
        _alarm.ringBy(Alarm::Clock::now() + _limits.requestSeconds);
        return MHD_YES;
    }

    bool body(Exchange& exchange, const char* data, std::size_t size)
    {
        exchange.received += size;
        if (!exchange.refusal)
            take(exchange, data, size);
        // A refused client is heard out, so that it reads the answer instead of a reset connection; up to a
        // point.
        return !exchange.refusal || exchange.received <= _limits.discardBytes;
    }

    // Adds to a body, or refuses the request.
    void take(Exchange& exchange, const char* data, std::size_t size)
    {
        std::string& body = exchange.request.body;
        if (exchange.received > exchange.bodyLimit)
            exchange.refusal = tooLarge(exchange.request, exchange.bodyLimit);
        else if (!exchange.share.take(size))
            exchange.refusal =
                refused(exchange.request,
                        kUnavailable,
                        "The requests under way hold " + std::to_string(_bodies.bytes()) + " bytes already.");
        if (exchange.refusal)
        {
            body = std::string();
            exchange.share.giveBack();
            return;
        }
        // Growing in steps takes up to three times a large body. The announced length is believed once a part
        // of it is there: announcing alone must not cost memory. What became shorter so far will go on so.
        const std::size_t announced = std::min(announcedBytes(exchange.request), exchange.bodyLimit);
        const std::size_t before = body.size();
        const std::size_t needed = before + size;
        if (needed > body.capacity() && exchange.received <= announced &&
            announced / kBelief <= exchange.received)
            body.reserve(std::min(announced, (announced / exchange.received + 1) * needed));
        if (exchange.collect)
            exchange.collect(body, {data, size});
        else
            body.append(data, size);
        exchange.share.giveBack(size - (body.size() - before));
    }

    MHD_Result complete(MHD_Connection* handle, Connection& connection)
    {
        if (!connection.complete())
            return MHD_NO;
        const ExchangePtr exchange = connection.exchange();
        std::optional<HttpResponse>& refusal = exchange->refusal;
        if (!refusal && !_pool.reserve())
            refusal = refused(exchange->request, kUnavailable, "Too many requests are waiting.");
        if (refusal && refusal->holdFor.count() == 0)
            return queueWhole(handle, std::move(*refusal), exchange->closes || _stopping);
        exchange->isAnswering = true;
        exchange->reply.await();
        if (refusal)
            finish(*exchange, std::move(*refusal));
        else
        {
            changed([&] { _running.push_back(exchange); });
            _pool.submit([this, exchange](WorkerPool::Worker& worker) { work(exchange, worker); });
        }
        return MHD_YES;
    }

    void work(const ExchangePtr& running, WorkerPool::Worker& worker)
    {
        Exchange& exchange = *running;
        const Time now = Alarm::Clock::now();
        exchange.reply.start(now, [this, &worker] { writeOff(worker); });
        _alarm.ringBy(now + _limits.operationSeconds);
        HttpResponse response;
        try
        {
            response = _handler.answer(exchange.request, exchange.reply);
        }
        catch (const std::exception& error)
        {
            log(LogLevel::Error, "http", exchange.request.peer + ": " + error.what());
            response = plain(kInternalError, "The server failed to answer.");
            response.trailers = failureTrailers(CimError(CimStatus::Failed, "the server failed to answer"));
        }
        exchange.request.body = std::string();
        exchange.share.giveBack();
        _pool.giveBack(worker); // before the client can ask again
        finish(exchange, std::move(response));
        changed([&] { _running.remove(running); });
    }

    void finish(Exchange& exchange, HttpResponse&& response)
    {
        const Time now = Alarm::Clock::now();
        const Time due = now + response.holdFor;
        exchange.reply.finish(std::move(response), now);
        if (due == now)
            return;
        _alarm.ringBy(due);
        if (_stopping) // perhaps too late for stop() to see it
            exchange.reply.release();
    }

    // The answer has been made, or its first chunk.
    MHD_Result reply(MHD_Connection* handle, Connection& connection)
    {
        const ExchangePtr exchange = connection.exchange();
        HttpResponse head;
        switch (exchange->reply.takeHead(head))
        {
        case Reply::Start::None:
            return MHD_NO;
        case Reply::Start::Whole:
            if (head.body.size() > _limits.chunkBytes)
                setTimeout(handle, static_cast<unsigned>(_limits.slowClientSeconds.count()));
            return queueWhole(handle, std::move(head), exchange->closes || _stopping);
        case Reply::Start::Stream:
            break;
        }
        setTimeout(handle, static_cast<unsigned>(_limits.slowClientSeconds.count()));
        connection.beginStream();
        return queueStream(handle, std::move(head), exchange, _stopping);
    }

    Time check(Time now)
    {
        Time next = Alarm::kNever;
        for (const ConnectionPtr& connection : connections())
            next = std::min(next, connection->check(now));
        for (const ExchangePtr& exchange : running()) // a client that has gone leaves its provider behind
            next = std::min(next, exchange->reply.check(now));
        return next;
    }

    void writeOff(WorkerPool::Worker& worker)
    {
        const unsigned hung = _pool.writeOff(worker);
        log(LogLevel::Error,
            "http",
            "an operation hangs; its thread was replaced, " + std::to_string(hung) + " of at most " +
                std::to_string(_limits.hungWorkers) + " such threads");
        if (hung > _limits.hungWorkers && _onHungWorkers)
            _onHungWorkers();
    }

    std::list<ConnectionPtr> connections()
    {
        std::lock_guard<std::mutex> lock(_mutex);
        return _connections;
    }

    std::list<ExchangePtr> running()
    {
        std::lock_guard<std::mutex> lock(_mutex);
        return _running;
    }

    // Changes what stop() waits for.
    template <class Change>
    void changed(Change change)
    {
        std::lock_guard<std::mutex> lock(_mutex);
        change();
        _changed.notify_all();
    }

    HttpHandler& _handler;
    const Limits _limits;
    const TlsIdentity _tls;
    const OnHungWorkers _onHungWorkers;
    BodyBudget _bodies;
    SpoolArea _area;
    std::atomic<bool> _stopping{false};
    std::mutex _mutex;
    std::condition_variable _changed;
    std::list<ConnectionPtr> _connections;
    unsigned _exchanges = 0;         // from a complete head to the end of the answer
    std::list<ExchangePtr> _running; // handed to a worker and not yet returned from
    WorkerPool _pool;
    Alarm _alarm;               // after all that it looks at
    std::list<Daemon> _daemons; // one for each port
};

HttpServer::HttpServer(HttpHandler& handler,
                       const Limits& limits,
                       std::vector<ListenSocket> sockets,
                       ServerOptions options)
    : _impl(std::make_unique<Impl>(handler, limits, std::move(sockets), std::move(options)))
{
}

HttpServer::~HttpServer() = default;

bool HttpServer::stop(std::chrono::milliseconds grace)
{
    return _impl->stop(grace);
}

} // namespace cimd
