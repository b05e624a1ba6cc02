// Operations that follow associations, from their parameters to their results.
#include "agent/ops/calls.h"
#include "agent/ops/request_parts.h"
#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

// What Associators and References have in common.
void objectOptions(Call& call, InstanceOptions& options)
{
    call.parameters.boolean("IncludeQualifiers", false); // instances have none
    instanceOptions(call, options);
}

auto objectSink(Call& call)
{
    return sinkFor<Instance>(call,
                             [&call, markup = ClassMarkup()](const Instance& item) mutable
                             { writeObjectWithPath(call.xml, call.host, item, markup); });
}

auto objectPathSink(Call& call)
{
    return sinkFor<ObjectPath>(call,
                               [&call, markup = ClassMarkup()](const ObjectPath& item) mutable
                               { writeObjectPath(call.xml, call.host, item, markup); });
}

void associators(Call& call)
{
    auto request = associatorsRequest<AssociatorsRequest>(call, call.parameters.objectName("ObjectName"));
    objectOptions(call, request);
    call.parameters.finish();
    auto sink = objectSink(call);
    call.service.associators(call.context, request, sink);
}

void associatorNames(Call& call)
{
    const auto request =
        associatorsRequest<AssociatorNamesRequest>(call, call.parameters.objectName("ObjectName"));
    call.parameters.finish();
    auto sink = objectPathSink(call);
    call.service.associatorNames(call.context, request, sink);
}

void references(Call& call)
{
    auto request = referencesRequest<ReferencesRequest>(call, call.parameters.objectName("ObjectName"));
    objectOptions(call, request);
    call.parameters.finish();
    auto sink = objectSink(call);
    call.service.references(call.context, request, sink);
}

void referenceNames(Call& call)
{
    const auto request =
        referencesRequest<ReferenceNamesRequest>(call, call.parameters.objectName("ObjectName"));
    call.parameters.finish();
    auto sink = objectPathSink(call);
    call.service.referenceNames(call.context, request, sink);
}

} // namespace

const OperationList kAssociationCalls = {
    {"Associators", associators, true},
    {"AssociatorNames", associatorNames, true},
    {"References", references, true},
    {"ReferenceNames", referenceNames, true},
};

} // namespace cimd
