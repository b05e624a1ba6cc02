// Operations on single properties, from their parameters to their results.
#include "agent/ops/calls.h"
#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

void getProperty(Call& call)
{
    GetPropertyRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    request.property = call.parameters.requiredText("PropertyName");
    call.parameters.finish();
    writeValue(call.xml, call.service.getProperty(call.context, request));
    ++call.results;
}

void setProperty(Call& call)
{
    SetPropertyRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    call.willChange({request.path.text(), {}, {}, {}});
    request.value = call.parameters.value("NewValue");
    request.value.name = call.parameters.requiredText("PropertyName");
    call.willChange({request.path.text(), {}, {request.value.name}, {}});
    call.parameters.finish();
    call.service.setProperty(call.context, request);
}

} // namespace

const OperationList kPropertyCalls = {
    {"GetProperty", getProperty, true},
    {"SetProperty", setProperty, false, true},
};

} // namespace cimd
