// Operations on classes and qualifier declarations, from their parameters to their results.
#include "agent/ops/calls.h"
#include "agent/xml/declaration_writer.h"
#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

void getClass(Call& call)
{
    GetClassRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.requiredClassName("ClassName"));
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    writeClass(call.xml, call.service.getClass(request));
    ++call.results;
}

void enumerateClasses(Call& call)
{
    EnumerateClassesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.className("ClassName"));
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    call.parameters.finish();
    auto sink = sinkFor<ClassDecl>(call, [&](const ClassDecl& item) { writeClass(call.xml, item); });
    call.service.enumerateClasses(request, sink);
}

void enumerateClassNames(Call& call)
{
    EnumerateClassNamesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.className("ClassName"));
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    call.parameters.finish();
    auto sink = sinkFor<CimName>(call, [&](const CimName& item) { writeClassName(call.xml, item); });
    call.service.enumerateClassNames(request, sink);
}

void getQualifier(Call& call)
{
    GetQualifierRequest request;
    request.nameSpace = call.nameSpace();
    request.name = call.about(CimName(call.parameters.requiredText("QualifierName")));
    call.parameters.finish();
    writeQualifierDeclaration(call.xml, call.service.getQualifier(request));
    ++call.results;
}

void enumerateQualifiers(Call& call)
{
    call.parameters.finish();
    auto sink = sinkFor<QualifierDecl>(
        call, [&](const QualifierDecl& item) { writeQualifierDeclaration(call.xml, item); });
    call.service.enumerateQualifiers(call.nameSpace(), sink);
}

} // namespace

const OperationList kClassCalls = {
    {"GetClass", getClass, true},
    {"EnumerateClasses", enumerateClasses, true},
    {"EnumerateClassNames", enumerateClassNames, true},
    {"GetQualifier", getQualifier, true},
    {"EnumerateQualifiers", enumerateQualifiers, true},
};

} // namespace cimd
