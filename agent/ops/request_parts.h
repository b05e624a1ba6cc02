// Parts of requests that several operations have in common, whether they answer at once or are pulled.
#ifndef AGENT_OPS_REQUEST_PARTS_H
#define AGENT_OPS_REQUEST_PARTS_H

#include "agent/ops/Call.h"

#include <utility>

namespace cimd
{

// For Associators and AssociatorNames.
template <class Request>
Request associatorsRequest(Call& call, ObjectPath from)
{
    Request request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(std::move(from));
    request.assocClass = call.parameters.className("AssocClass");
    request.resultClass = call.parameters.className("ResultClass");
    request.role = call.parameters.text("Role");
    request.resultRole = call.parameters.text("ResultRole");
    return request;
}

// For References and ReferenceNames.
template <class Request>
Request referencesRequest(Call& call, ObjectPath from)
{
    Request request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(std::move(from));
    request.resultClass = call.parameters.className("ResultClass");
    request.role = call.parameters.text("Role");
    return request;
}

// What is wanted of each instance, for every operation that returns some.
inline void instanceOptions(Call& call, InstanceOptions& options)
{
    options.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", options.includeClassOrigin);
    options.properties = call.parameters.propertyList("PropertyList");
}

inline EnumerateInstancesRequest enumerateInstancesRequest(Call& call)
{
    EnumerateInstancesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.requiredClassName("ClassName"));
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    instanceOptions(call, request);
    return request;
}

inline EnumerateInstanceNamesRequest enumerateInstanceNamesRequest(Call& call)
{
    return {call.nameSpace(), call.about(call.parameters.requiredClassName("ClassName"))};
}

} // namespace cimd

#endif
