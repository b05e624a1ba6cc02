// Extrinsic methods, from their arguments to their results.
#include "agent/cim/value_text.h"
#include "agent/ops/calls.h"
#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

void invokeMethod(Call& call)
{
    InvokeMethodRequest request;
    request.path = call.about(call.reader.path(call.wire.target));
    request.nameSpace = request.path.nameSpace();
    request.method = call.wire.method;
    Change change{request.path.text(), call.wire.method, {}, {}};
    call.willChange(change);
    for (const XmlElement element : call.wire.parameters)
    {
        const auto& argument = request.arguments.emplace_back(
            named(requiredAttribute(element, "NAME"), [&] { return call.reader.argument(element); }));
        change.names.push_back(argument.name);
    }
    call.willChange(std::move(change));
    const MethodResult result = call.service.invokeMethod(call.context, request);
    if (isInteger(result.returnValue.type()) && !result.returnValue.isArray() && !result.returnValue.isNull())
        appendText(call.change->returned, result.returnValue);
    writeReturnValue(call.xml, result.returnValue);
    // NULL is left out, which says the same: sblim-wbemcli and pywbemcli fall over a reference without a
    // value.
    for (const Argument& argument : result.out)
        if (!argument.value.isNull())
            writeArgument(call.xml, argument);
}

} // namespace

constexpr Operation kInvokeMethod{"InvokeMethod", invokeMethod, false, true};

} // namespace cimd
