// What the HTTP server asks of the layer above it.
#ifndef AGENT_HTTP_HTTPHANDLER_H
#define AGENT_HTTP_HTTPHANDLER_H

#include "agent/http/message.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimd
{

// What a request's head alone decides.
struct Verdict
{
    // Set: the request is refused. This is final: the body is read and dropped.
    std::optional<HttpResponse> response = std::nullopt;
    // Bytes of body taken from this client, where that is less than from others; for more vouch() is asked.
    std::size_t bodyLimit = std::numeric_limits<std::size_t>::max();
    // Appends what arrives to the body, in a shorter form if it knows one, at most as many bytes. Runs on the
    // I/O thread. Empty: the body is kept as it comes.
    std::function<void(std::string& body, std::string_view part)> collect = nullptr;
    // The client has proved lately who it is.
    bool isKnown = false;
};

// Nobody waits for the rest of an answer: the client left or took too long, or time for it has run out.
class AnswerClosed : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// The way of one answer to its client while it is made. For the thread that makes it.
class AnswerStream
{
  public:
    virtual ~AnswerStream() = default;

    // To be called whenever something was appended to the body. As long as it is short nothing happens; then
    // status, headers and body leave, later the body alone, which is empty afterwards. Waits for a slow
    // client when there is no room for more. Throws AnswerClosed when the handler should stop.
    virtual void flush(HttpResponse& response) = 0;

    // Bytes of body that flush() has taken. If any, the answer can no longer be replaced by another.
    virtual std::size_t taken() const = 0;

    // Says how to answer should the handler take longer than it may; a later call replaces it. `late` runs on
    // another thread, at most once, and only before the handler returns.
    virtual void whenLate(std::function<HttpResponse()> late) = 0;
};

// The members are called from several threads at once.
class HttpHandler
{
  public:
    virtual ~HttpHandler() = default;

    // Looks at a request whose head has arrived and whose body has not. Runs on an I/O thread: must not
    // wait.
    virtual Verdict refuse(const HttpRequest& head) = 0;

    // Looks at a client whose body exceeds the limit of its verdict; runs on a worker.
    // @return nothing if the body may have the size that anybody's may, or how the request is refused.
    virtual std::optional<HttpResponse> vouch(const HttpRequest&) { return std::nullopt; }

    // Answers a complete request; runs on a worker. May take the body out of it.
    // @return the answer or, of one that has begun, the rest.
    virtual HttpResponse answer(HttpRequest& request, AnswerStream& stream) = 0;
};

} // namespace cimd

#endif
