// One HTTP request to one operation.
#include "agent/ops/FrontEnd.h"

#include "agent/cim/value_text.h"
#include "agent/http/cim_headers.h"
#include "agent/log/log.h"
#include "agent/ops/TracedStream.h"
#include "agent/xml/ByteArrayPacker.h"

#include <chrono>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kMaxReason = 500; // bytes of an error text in the log

std::string headerText(const HttpRequest& request, const char* name)
{
    const std::string* value = request.header(name);
    return value != nullptr ? *value : std::string();
}

[[noreturn]] void mismatch(const HttpRequest& request, const char* header, const std::string& inMessage)
{
    throw RequestError(RequestError::Faulty,
                       "header-mismatch",
                       std::string(header) + " is " + quoted(percentDecoded(headerText(request, header))) +
                           " but the message says " + quoted(inMessage));
}

// The object an extrinsic call is about, or nothing if its path is faulty: the operation reports that.
std::optional<ObjectPath> targetOf(const WireRequest& wire, const Limits& limits)
try
{
    return ElementReader(limits).path(wire.target);
}
catch (const CimError&)
{
    return std::nullopt;
}

void checkAgreement(const HttpRequest& request, const WireRequest& wire, const Limits& limits)
{
    if (!equalNoCase(percentDecoded(headerText(request, "CIMMethod")), wire.method))
        mismatch(request, "CIMMethod", wire.method);
    const std::string object = headerText(request, "CIMObject");
    if (!wire.extrinsic)
    {
        if (!namesNameSpace(object, wire.nameSpace))
            mismatch(request, "CIMObject", wire.nameSpace);
        return;
    }
    const std::optional<ObjectPath> target = targetOf(wire, limits);
    if (target && !namesObject(object, *target))
        mismatch(request, "CIMObject", target->text());
}

std::string counted(std::uint64_t number, const char* what)
{
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

// An operation that has been answered, as the log and the counters see it.
struct Done
{
    const RequestContext& context;
    const WireRequest& wire;
    const Outcome& outcome;
    std::chrono::microseconds time;
    std::uint64_t bytes; // of the answer's body
};

// "GetInstance VRAX_FCPort: 192.0.2.7:49152 as alice: ok (532 us, 1 result, 1804 bytes)"
void logOperation(const Done& done)
{
    const auto& error = done.outcome.error;
    // A failure may be the server's or a provider's and deserves attention; other errors are everyday
    // answers.
    const LogLevel level = error && error->status() == CimStatus::Failed ? LogLevel::Warning : LogLevel::Info;
    if (!logEnabled(level))
        return;
    const std::string& principal = done.context.principal;
    std::string line = operationText(done.wire.method, done.outcome.subject) + done.context.clientAddress +
                       " as " + (principal.empty() ? "-" : clipped(principal)) + ": ";
    line +=
        error ? std::string(statusName(error->status())) + ": " + clipped(error->what(), kMaxReason) : "ok";
    log(level,
        "cim",
        line + " (" + std::to_string(done.time.count()) + " us, " + counted(done.outcome.results, "result") +
            ", " + counted(done.bytes, "byte") + ")");
}

} // namespace

Verdict FrontEnd::refuse(const HttpRequest& head)
{
    std::optional<HttpResponse> response = refuseHead(head);
    if (response && logEnabled(LogLevel::Info))
        log(LogLevel::Info,
            "http",
            head.peer + ": " + clipped(head.method) + " " + clipped(head.target) + ": HTTP " +
                std::to_string(response->status));
    Verdict verdict{std::move(response)};
    verdict.collect = [packer = ByteArrayPacker()](std::string& body, std::string_view part) mutable
    { packer.append(body, part); };
    return verdict;
}

HttpResponse FrontEnd::answer(HttpRequest& request, AnswerStream& stream)
{
    if (_watch.trace == nullptr)
        return operate(request, stream);
    _watch.trace->write("request from", request.peer, unpackByteArrays(request.body));
    TracedStream traced(stream, *_watch.trace, request.peer);
    HttpResponse response = operate(request, traced);
    traced.finish(response);
    return response;
}

HttpResponse FrontEnd::operate(HttpRequest& request, AnswerStream& stream)
try
{
    const auto start = std::chrono::steady_clock::now();
    const WireRequest wire = readRequest(std::move(request.body), _limits);
    checkAgreement(request, wire, _limits);
    InFlight::Entry entry(_watch.inFlight, wire.method, request.peer);

    RequestContext context;
    context.principal = request.user;
    context.clientAddress = request.peer;
    context.acceptLanguage = headerText(request, "Accept-Language");
    HttpResponse response = cimResponse();
    const std::string host = headerText(request, "Host"); // HTTP/1.0 clients need not send it
    const Outcome outcome =
        _operations.run(context, host.empty() ? "localhost" : host, wire, entry, response, stream);

    const auto time =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    if (stream.taken() == 0) // else the head has left
        response.headers.emplace_back("WBEMServerResponseTime", std::to_string(time.count()));
    const Done done{context, wire, outcome, time, stream.taken() + response.body.size()};
    logOperation(done);
    if (outcome.change)
        audit(context,
              outcome.operation,
              *outcome.change,
              outcome.error ? statusName(outcome.error->status()) : "ok");
    if (_watch.counters != nullptr)
        _watch.counters->add({outcome.operation,
                              outcome.subject,
                              outcome.error.has_value(),
                              done.time,
                              outcome.results,
                              done.bytes});
    return response;
}
catch (const RequestError& error)
{
    log(LogLevel::Warning,
        "http",
        request.peer + ": " + error.cimError() + ": " + clipped(error.what(), kMaxReason));
    const unsigned status = error.kind() == RequestError::Faulty ? kBadRequest : kNotImplemented;
    return refusal(status, error.cimError(), error.what());
}

} // namespace cimd
