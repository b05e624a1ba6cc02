// Extrinsic methods, from their arguments to their results.
#include "agent/ops/Calls.h"
#include "agent/xml/ElementWriter.h"

namespace cimd
{

void invokeMethod(Call& call)
{
    InvokeMethodRequest request;
    request.path = call.about(call.reader.path(call.wire.target));
    request.nameSpace = request.path.nameSpace();
    request.method = call.wire.method;
    for (const XmlElement element : call.wire.parameters)
        request.arguments.push_back(
            named(requiredAttribute(element, "NAME"), [&] { return call.reader.argument(element); }));
    const MethodResult result = call.service.invokeMethod(call.context, request);
    writeReturnValue(call.xml, result.returnValue);
    // NULL is left out, which says the same: sblim-wbemcli and pywbemcli fall over a reference without a
    // value.
    for (const Argument& argument : result.out)
        if (!argument.value.isNull())
            writeArgument(call.xml, argument);
}

} // namespace cimd
