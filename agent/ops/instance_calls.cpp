// Operations on instances, from their parameters to their results.
#include "agent/ops/calls.h"
#include "agent/ops/request_parts.h"
#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

// Servers never agreed on what LocalOnly hides, and instances have no qualifiers.
void ignoreOldOptions(Call& call)
{
    call.parameters.boolean("LocalOnly", true);
    call.parameters.boolean("IncludeQualifiers", false);
}

void enumerateInstances(Call& call)
{
    const EnumerateInstancesRequest request = enumerateInstancesRequest(call);
    ignoreOldOptions(call);
    call.parameters.finish();
    auto sink = sinkFor<Instance>(call,
                                  [&, markup = ClassMarkup()](const Instance& item) mutable
                                  { writeNamedInstance(call.xml, item, markup); });
    call.service.enumerateInstances(call.context, request, sink);
}

void enumerateInstanceNames(Call& call)
{
    const EnumerateInstanceNamesRequest request = enumerateInstanceNamesRequest(call);
    call.parameters.finish();
    auto sink = sinkFor<ObjectPath>(call,
                                    [&, markup = ClassMarkup()](const ObjectPath& item) mutable
                                    { markup.writeName(call.xml, item); });
    call.service.enumerateInstanceNames(call.context, request, sink);
}

void getInstance(Call& call)
{
    GetInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    instanceOptions(call, request);
    ignoreOldOptions(call);
    call.parameters.finish();
    writeInstance(call.xml, call.service.getInstance(call.context, request));
    ++call.results;
}

std::vector<CimName> namesOf(const Instance& instance)
{
    std::vector<CimName> names;
    for (const Property& property : instance.properties())
        names.push_back(property.name);
    return names;
}

void createInstance(Call& call)
{
    CreateInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.instance = call.about(call.parameters.instance("NewInstance"));
    const ObjectPath object(request.nameSpace, request.instance.className());
    call.willChange({object.text(), {}, namesOf(request.instance), {}});
    call.parameters.finish();
    const ObjectPath path = call.service.createInstance(call.context, request);
    call.change->object = path.text();
    writeInstanceName(call.xml, path);
    ++call.results;
}

void modifyInstance(Call& call)
{
    ModifyInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.instance = call.about(call.parameters.namedInstance("ModifiedInstance"));
    call.willChange({request.instance.path().text(), {}, namesOf(request.instance), {}});
    call.parameters.boolean("IncludeQualifiers", true); // instances have none
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    call.service.modifyInstance(call.context, request);
}

void deleteInstance(Call& call)
{
    DeleteInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    call.willChange({request.path.text(), {}, {}, {}});
    call.parameters.finish();
    call.service.deleteInstance(call.context, request);
}

} // namespace

const OperationList kInstanceCalls = {
    {"EnumerateInstances", enumerateInstances, true},
    {"EnumerateInstanceNames", enumerateInstanceNames, true},
    {"GetInstance", getInstance, true},
    {"CreateInstance", createInstance, true, true},
    {"ModifyInstance", modifyInstance, false, true},
    {"DeleteInstance", deleteInstance, false, true},
};

} // namespace cimd
