// Operations on classes and qualifier declarations, answered from the repository.
#include "agent/cim/CimError.h"
#include "agent/service/CimService.h"

namespace cimd
{
namespace
{

// The classes an enumeration names: below `start`, or all from the roots down if it is empty.
std::vector<const ClassInfo*>
classesBelow(const ClassRepository& repository, const InputCheck& check, const CimName& start, bool isDeep)
{
    std::vector<const ClassInfo*> found;
    if (!start.empty())
    {
        const ClassInfo& info = check.classNamed(start);
        if (!isDeep)
            return info.subclasses();
        found = ClassRepository::family(info);
        found.erase(found.begin());
        return found;
    }
    for (const auto& info : repository.classes())
        if (isDeep || !info->superClass())
            found.push_back(info.get());
    return found;
}

} // namespace

ClassDecl CimService::getClass(const GetClassRequest& request) const
{
    return in(request.nameSpace)
        .classNamed(request.className)
        .describe({request.localOnly, request.includeQualifiers, request.includeClassOrigin},
                  request.properties);
}

void CimService::enumerateClasses(const EnumerateClassesRequest& request, Sink<ClassDecl>& sink) const
{
    const InputCheck check = in(request.nameSpace);
    for (const ClassInfo* info : classesBelow(_repository, check, request.className, request.deepInheritance))
        sink.put(
            info->describe({request.localOnly, request.includeQualifiers, request.includeClassOrigin}, {}));
}

void CimService::enumerateClassNames(const EnumerateClassNamesRequest& request, Sink<CimName>& sink) const
{
    const InputCheck check = in(request.nameSpace);
    for (const ClassInfo* info : classesBelow(_repository, check, request.className, request.deepInheritance))
        sink.put(info->name());
}

QualifierDecl CimService::getQualifier(const GetQualifierRequest& request) const
{
    in(request.nameSpace);
    const QualifierDecl* decl = _repository.findQualifier(request.name);
    if (!decl)
        throw CimError(CimStatus::NotFound, "qualifier " + request.name.str() + " is not declared");
    return *decl;
}

void CimService::enumerateQualifiers(const std::string& nameSpace, Sink<QualifierDecl>& sink) const
{
    in(nameSpace);
    for (const QualifierDecl& decl : _repository.qualifiers())
        sink.put(decl);
}

} // namespace cimd
