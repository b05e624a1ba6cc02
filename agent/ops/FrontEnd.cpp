// One HTTP request to one operation.
#include "agent/ops/FrontEnd.h"

#include "agent/cim/ValueText.h"
#include "agent/http/CimHeaders.h"
#include "agent/log/Log.h"

#include <chrono>
#include <utility>

namespace cimd
{

namespace
{

constexpr unsigned kBadRequest = 400;

std::string headerText(const HttpRequest& request, const char* name)
{
    const std::string* value = request.header(name);
    return value != nullptr ? *value : std::string();
}

[[noreturn]] void mismatch(const HttpRequest& request, const char* header, const std::string& inMessage)
{
    throw RequestError(kBadRequest,
                       "header-mismatch",
                       std::string(header) + " is " + quoted(percentDecoded(headerText(request, header))) +
                           " but the message says " + quoted(inMessage));
}

/** The object an extrinsic call is about, or nothing if its path is faulty: the operation reports that. */
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

void logOperation(const HttpRequest& request,
                  const WireRequest& wire,
                  const Outcome& outcome,
                  std::chrono::steady_clock::time_point start)
{
    // A failure may be the server's or a provider's and deserves attention; other errors are everyday
    // answers.
    const bool failed = outcome.error && outcome.error->status() == CimStatus::Failed;
    const LogLevel level = failed ? LogLevel::Warning : LogLevel::Info;
    if (!logEnabled(level))
        return;
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::string line = operationText(wire.method, outcome.subject) + request.peer + ": ";
    line += outcome.error ? std::string(statusName(outcome.error->status())) + ": " + outcome.error->what()
                          : "ok";
    log(level, "cim", line + " (" + std::to_string(elapsed.count()) + " us)");
}

} // namespace

Verdict FrontEnd::refuse(const HttpRequest& head)
{
    std::optional<HttpResponse> response = refuseHead(head);
    if (response && logEnabled(LogLevel::Info))
        log(LogLevel::Info,
            "http",
            head.peer + ": " + head.method + " " + head.target + ": HTTP " +
                std::to_string(response->status));
    return {std::move(response)};
}

HttpResponse FrontEnd::answer(HttpRequest& request, AnswerStream& stream)
try
{
    const auto start = std::chrono::steady_clock::now();
    const WireRequest wire = readRequest(std::move(request.body), _limits);
    checkAgreement(request, wire, _limits);
    InFlight::Entry entry(_watch.inFlight, wire.method, request.peer);

    RequestContext context;
    context.clientAddress = request.peer;
    context.acceptLanguage = headerText(request, "Accept-Language");
    HttpResponse response = cimResponse();
    const std::string host = headerText(request, "Host"); // HTTP/1.0 clients need not send it
    const Outcome outcome =
        _operations.run(context, host.empty() ? "localhost" : host, wire, entry, response, stream);
    logOperation(request, wire, outcome, start);
    return response;
}
catch (const RequestError& error)
{
    log(LogLevel::Warning, "http", request.peer + ": " + error.cimError() + ": " + error.what());
    return refusal(error.httpStatus(), error.cimError(), error.what());
}

} // namespace cimd
