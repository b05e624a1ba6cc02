// libmicrohttpd behind the server's interface.
//
// A request passes these stations: head complete (I/O thread: refuse() may end it), body read up to the limit
// (I/O thread), connection suspended and request handed to a worker, answer made (worker), connection
// resumed, answer queued (I/O thread). While it is suspended only the worker touches the exchange;
// libmicrohttpd's own lock around suspend and resume orders the two threads.
#include "agent/http/HttpServer.h"

#include "agent/cim/CimName.h"
#include "agent/http/WorkerPool.h"
#include "agent/log/Log.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <microhttpd.h>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>

namespace cimd
{

namespace
{

constexpr unsigned kBadRequest = 400;
constexpr unsigned kContentTooLarge = 413;
constexpr unsigned kInternalError = 500;
constexpr unsigned kUnavailable = 503;
constexpr const char* kTooLarge = "The request is too large.\n";

struct FreeResponse
{
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using ResponsePtr = std::unique_ptr<MHD_Response, FreeResponse>;

HttpResponse plain(unsigned status, const char* text)
{
    return {status, {{"Content-Type", "text/plain; charset=\"utf-8\""}}, text};
}

/** What libmicrohttpd has to say about connections is about clients that misbehave. */
__attribute__((format(printf, 2, 0))) void logMessage(void*, const char* format, va_list arguments)
{
    if (!logEnabled(LogLevel::Debug))
        return;
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    log(LogLevel::Debug, "http", text);
}

MHD_Result addHeader(void* to, MHD_ValueKind, const char* name, const char* value)
{
    static_cast<HttpRequest*>(to)->headers.emplace_back(name, value != nullptr ? value : "");
    return MHD_YES;
}

std::string peerName(MHD_Connection* connection)
{
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    if (info == nullptr || info->client_addr == nullptr)
        return "unknown";
    const bool ipv6 = info->client_addr->sa_family == AF_INET6;
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(info->client_addr,
                    ipv6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in),
                    host,
                    sizeof host,
                    port,
                    sizeof port,
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return "unknown";
    return (ipv6 ? "[" + std::string(host) + "]" : host) + ":" + port;
}

/** Bytes of body that the head announces; 0 when it does not say. */
std::size_t announcedBytes(const HttpRequest& request)
{
    const std::string* text = request.header(MHD_HTTP_HEADER_CONTENT_LENGTH);
    std::size_t bytes = 0;
    if (text != nullptr)
        std::from_chars(text->data(), text->data() + text->size(), bytes);
    return bytes;
}

/** Whoever announces the length of a body in two ways may mean one thing to us and another to a proxy. */
bool isAmbiguous(const HttpRequest& request)
{
    const auto saysLength = [](const HttpHeader& header)
    {
        return equalNoCase(header.first, MHD_HTTP_HEADER_CONTENT_LENGTH) ||
               equalNoCase(header.first, MHD_HTTP_HEADER_TRANSFER_ENCODING);
    };
    return std::count_if(request.headers.begin(), request.headers.end(), saysLength) > 1;
}

/** One request on its way through the stations. */
struct Exchange
{
    HttpRequest request;
    std::optional<HttpResponse> response;
    std::size_t received = 0; // body bytes, dropped ones included
    std::size_t bodyLimit = 0;
};

/** Keeps answers until they are whole. */
class Collecting : public AnswerStream
{
  public:
    void flush(HttpResponse&) override {}
    std::size_t taken() const override { return 0; }
    void whenLate(std::function<HttpResponse()>) override {}
};

/** Queues a response whose body the response object owns, so that a large answer is not copied. */
MHD_Result queue(MHD_Connection* connection, HttpResponse&& answer, bool close)
{
    auto body = std::make_unique<std::string>(std::move(answer.body));
    ResponsePtr response(MHD_create_response_from_buffer_with_free_callback_cls(
        body->size(), body->data(), [](void* text) { delete static_cast<std::string*>(text); }, body.get()));
    if (response == nullptr)
        return MHD_NO;
    body.release();
    for (const HttpHeader& header : answer.headers)
        if (MHD_add_response_header(response.get(), header.first.c_str(), header.second.c_str()) != MHD_YES)
            return MHD_NO;
    if (close)
        MHD_add_response_header(response.get(), MHD_HTTP_HEADER_CONNECTION, "close");
    return MHD_queue_response(connection, answer.status, response.get());
}

} // namespace

class HttpServer::Impl
{
  public:
    Impl(HttpHandler& handler, const Limits& limits, ListenSocket socket)
        : _handler(handler), _limits(limits),
          _pool(std::make_unique<WorkerPool>(limits.workers, limits.queuedRequests))
    {
        // Not epoll: libmicrohttpd uses it edge-triggered and misses the end of a connection that arrives
        // together with half a request, which then keeps its place until it has been idle for long enough.
        const unsigned flags = MHD_USE_POLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME | MHD_USE_ITC |
                               MHD_USE_ERROR_LOG | (socket.ipv6() ? unsigned{MHD_USE_IPv6} : 0U);
        _daemon = MHD_start_daemon(flags,
                                   socket.port(),
                                   nullptr,
                                   nullptr,
                                   &Impl::onRequest,
                                   this,
                                   MHD_OPTION_EXTERNAL_LOGGER, // first, so that it hears of faulty options
                                   &logMessage,
                                   nullptr,
                                   MHD_OPTION_LISTEN_SOCKET,
                                   socket.release(),
                                   MHD_OPTION_NOTIFY_COMPLETED,
                                   &Impl::onCompleted,
                                   this,
                                   MHD_OPTION_CONNECTION_LIMIT,
                                   limits.connections,
                                   MHD_OPTION_CONNECTION_MEMORY_LIMIT,
                                   limits.headBytes,
                                   MHD_OPTION_CONNECTION_TIMEOUT,
                                   limits.idleSeconds,
                                   MHD_OPTION_STRICT_FOR_CLIENT,
                                   1,
                                   MHD_OPTION_END);
        if (_daemon == nullptr)
            throw std::runtime_error("cannot start the HTTP server: libmicrohttpd refused its settings");
    }

    ~Impl()
    {
        stop(std::chrono::milliseconds(0));
        _pool.reset(); // resumes what is still suspended, which MHD_stop_daemon demands
        MHD_stop_daemon(_daemon);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    bool stop(std::chrono::milliseconds grace)
    {
        if (!_stopping.exchange(true))
            FileDescriptor listening(MHD_quiesce_daemon(_daemon));
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, grace, [this] { return _exchanges == 0 && _running == 0; });
        return _running == 0;
    }

  private:
    static MHD_Result onRequest(void* self,
                                MHD_Connection* connection,
                                const char* url,
                                const char* method,
                                const char*,
                                const char* data,
                                size_t* size,
                                void** state)
    try
    {
        auto& server = *static_cast<Impl*>(self);
        if (*state == nullptr)
            return server.head(connection, url, method, state);
        auto& exchange = *static_cast<Exchange*>(*state);
        if (*size != 0)
        {
            const bool goOn = server.body(exchange, data, *size);
            *size = 0;
            return goOn ? MHD_YES : MHD_NO;
        }
        return server.complete(connection, exchange);
    }
    catch (...)
    {
        return MHD_NO; // closes the connection; nothing but lack of memory gets here
    }

    static void onCompleted(void* self, MHD_Connection*, void** state, MHD_RequestTerminationCode)
    {
        if (*state == nullptr)
            return;
        delete static_cast<Exchange*>(*state);
        *state = nullptr;
        auto& server = *static_cast<Impl*>(self);
        server.leave(server._exchanges);
    }

    MHD_Result head(MHD_Connection* connection, const char* url, const char* method, void** state)
    {
        auto exchange = std::make_unique<Exchange>();
        HttpRequest& request = exchange->request;
        request.method = method;
        request.target = url;
        request.peer = peerName(connection);
        MHD_get_connection_values(connection, MHD_HEADER_KIND, &addHeader, &request);
        if (_stopping)
            exchange->response = plain(kUnavailable, "The server is stopping.\n");
        else
        {
            Verdict verdict = _handler.refuse(request);
            exchange->response = std::move(verdict.response);
            exchange->bodyLimit = std::min(_limits.bodyBytes, verdict.bodyLimit);
        }
        const bool ambiguous = isAmbiguous(request);
        if (ambiguous)
            exchange->response = plain(kBadRequest, "The length of the body is given more than once.\n");
        const std::size_t announced = announcedBytes(request);
        if (!exchange->response && announced > exchange->bodyLimit)
            exchange->response = plain(kContentTooLarge, kTooLarge);
        enter(_exchanges);
        Exchange& kept = *exchange;
        *state = exchange.release();
        // Whoever asks before sending the body, or would send more than we care or know to read, is answered
        // now.
        const bool asks = request.header(MHD_HTTP_HEADER_EXPECT) != nullptr;
        if (kept.response && (asks || ambiguous || announced > _limits.discardBytes))
            return queue(connection, std::move(*kept.response), true);
        return MHD_YES;
    }

    bool body(Exchange& exchange, const char* data, std::size_t size)
    {
        exchange.received += size;
        if (!exchange.response && exchange.received > exchange.bodyLimit)
        {
            exchange.request.body = std::string();
            exchange.response = plain(kContentTooLarge, kTooLarge);
        }
        if (!exchange.response)
            exchange.request.body.append(data, size);
        // A refused client is heard out, so that it reads the answer instead of a reset connection; up to a
        // point.
        return exchange.received <= _limits.discardBytes;
    }

    MHD_Result complete(MHD_Connection* connection, Exchange& exchange)
    {
        if (!exchange.response && !_pool->reserve())
            exchange.response = plain(kUnavailable, "Too many requests are waiting.\n");
        if (exchange.response)
            return queue(connection, std::move(*exchange.response), _stopping);
        MHD_suspend_connection(connection);
        enter(_running);
        _pool->submit([this, connection, &exchange] { work(connection, exchange); });
        return MHD_YES;
    }

    void work(MHD_Connection* connection, Exchange& exchange)
    {
        try
        {
            Collecting stream;
            exchange.response = _handler.answer(exchange.request, stream);
        }
        catch (const std::exception& error)
        {
            log(LogLevel::Error, "http", exchange.request.peer + ": " + error.what());
            exchange.response = plain(kInternalError, "The server failed to answer.\n");
        }
        MHD_resume_connection(connection); // from here on the exchange is the I/O thread's
        leave(_running);
    }

    void enter(unsigned& counter)
    {
        std::lock_guard<std::mutex> lock(_mutex);
        ++counter;
    }

    void leave(unsigned& counter)
    {
        std::lock_guard<std::mutex> lock(_mutex);
        --counter;
        _changed.notify_all();
    }

    HttpHandler& _handler;
    const Limits _limits;
    std::unique_ptr<WorkerPool> _pool;
    MHD_Daemon* _daemon = nullptr;
    std::atomic<bool> _stopping{false};
    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _exchanges = 0; // from a complete head to the end of the answer
    unsigned _running = 0;   // handed to a worker and not yet answered
};

HttpServer::HttpServer(HttpHandler& handler, const Limits& limits, ListenSocket socket)
    : _impl(std::make_unique<Impl>(handler, limits, std::move(socket)))
{
}

HttpServer::~HttpServer() = default;

bool HttpServer::stop(std::chrono::milliseconds grace)
{
    return _impl->stop(grace);
}

} // namespace cimd
