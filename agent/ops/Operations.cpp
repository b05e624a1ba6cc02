// What all operations have in common.
#include "agent/ops/Operations.h"

#include "agent/ops/calls.h"
#include "agent/ops/failure.h"
#include "agent/xml/ResponseWriter.h"

#include <exception>
#include <utility>

namespace cimd
{

namespace
{

const Operation& operationFor(const WireRequest& request)
{
    if (request.extrinsic)
        return kInvokeMethod;
    for (const OperationList* list :
         {&kInstanceCalls, &kAssociationCalls, &kClassCalls, &kPropertyCalls, &kPullCalls})
        for (const Operation& operation : *list)
            if (equalNoCase(operation.name, request.method))
                return operation;
    throw CimError(CimStatus::NotSupported, "operation " + request.method + " is not supported");
}

// The late answer of a request must not be made when the request is gone.
class LateScope
{
  public:
    explicit LateScope(AnswerStream& stream) : _stream(stream) {}
    ~LateScope() { _stream.whenLate({}); }
    LateScope(const LateScope&) = delete;
    LateScope& operator=(const LateScope&) = delete;

  private:
    AnswerStream& _stream;
};

} // namespace

Operations::Operations(const CimService& service, const Limits& limits, std::string spoolDirectory)
    : _service(service), _limits(limits), _reader(limits), _enumerations(limits, std::move(spoolDirectory))
{
}

Outcome Operations::run(const RequestContext& context,
                        const std::string& host,
                        const WireRequest& request,
                        InFlight::Entry& entry,
                        HttpResponse& response,
                        AnswerStream& stream)
{
    Outcome outcome;
    const LateScope lateScope(stream);
    try
    {
        _enumerations.expire();
        const Operation& operation = operationFor(request);
        outcome.operation = operation.name;
        if (operation.changes)
            outcome.change.emplace();
        if (request.parameters.size() > _limits.parameters)
            throw CimError(CimStatus::InvalidParameter,
                           "more than " + std::to_string(_limits.parameters) + " parameters");
        static const std::vector<XmlElement> kNone;
        ResponseWriter writer(response.body, request, [&] { stream.flush(response); });
        Call call{
            operation.name,
            _service,
            context,
            host,
            request,
            _reader,
            Parameters(request.extrinsic ? kNone : request.parameters, _reader, _limits.instanceProperties),
            _enumerations,
            response,
            stream,
            _limits.operationSeconds,
            writer.xml(),
            outcome.subject,
            outcome.results,
            entry,
            outcome.change};
        writer.begin(operation.returnsValue);
        call.setSubject({});
        operation.run(call);
        writer.end(operation.returnsValue);
        return outcome;
    }
    catch (const CimError& error)
    {
        outcome.error = error;
    }
    catch (const AnswerClosed& closed)
    {
        outcome.error = CimError(CimStatus::Failed, closed.what());
    }
    catch (const std::exception& error)
    {
        outcome.error = CimError(CimStatus::Failed, std::string("internal error: ") + error.what());
    }
    writeFailure(response, request, *outcome.error);
    return outcome;
}

} // namespace cimd
