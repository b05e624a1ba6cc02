// Operations that follow associations.
#include "agent/service/CimService.h"
#include "agent/service/result_shaping.h"

#include <algorithm>
#include <utility>

namespace cimd
{
namespace
{

bool hasRole(const PropertyDecl& reference, const CimName& role)
{
    return role.empty() || reference.name == role;
}

CMPIFlags originFlag(bool includeClassOrigin)
{
    return includeClassOrigin ? CMPI_FLAG_IncludeClassOrigin : 0U;
}

} // namespace

// True if one reference can hold the source and, where a far end is asked for, another one the result. A
// class that the repository does not know may be anything.
bool CimService::leadsSomewhere(const ClassInfo& association, const AssociationFilter& filter) const
{
    const auto canHold = [&](const PropertyDecl& reference, const ClassInfo& end)
    {
        const ClassInfo* declared = _repository.find(reference.referenceClass);
        return !declared || end.isA(*declared);
    };
    const auto canReach = [&](const PropertyDecl& reference)
    {
        const ClassInfo* declared = _repository.find(reference.referenceClass);
        // The result class may be above or below what the association declares.
        return hasRole(reference, filter.resultRole) &&
               (!filter.result || !declared || filter.result->isA(*declared) ||
                declared->isA(*filter.result));
    };
    const bool needsFarEnd = filter.result || !filter.resultRole.empty();
    for (const PropertyDecl* near : association.references())
    {
        if (!hasRole(*near, filter.role) || !canHold(*near, filter.source))
            continue;
        if (!needsFarEnd)
            return true;
        for (const PropertyDecl* far : association.references())
            if (far != near && canReach(*far))
                return true;
    }
    return false;
}

std::vector<const ProviderEntry*> CimService::associationProviders(const AssociationFilter& filter,
                                                                   const std::string& nameSpace) const
{
    // An association provider is not told for which class it is called: one that serves several is called
    // once.
    std::vector<const ProviderEntry*> found;
    const auto isCalled = [&](const ProviderEntry& entry)
    {
        return std::any_of(found.begin(),
                           found.end(),
                           [&](const ProviderEntry* other) { return other->provider == entry.provider; });
    };
    for (const ProviderEntry& entry : _providers.entries())
        if (entry.registration.has(ProviderKind::Association) && entry.serves(nameSpace) &&
            (!filter.association || entry.info->isA(*filter.association)) &&
            leadsSomewhere(*entry.info, filter) && !isCalled(entry))
            found.push_back(&entry);
    return found;
}

template <class Request, class MakeFilter>
CimService::Walk CimService::walkFrom(const Request& request, MakeFilter makeFilter) const
{
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& source = check.classNamed(request.path.className());
    ObjectPath path = check.instancePath(request.path, source);
    const AssociationFilter filter = makeFilter(check, source);
    return {check.nameSpace(), std::move(path), associationProviders(filter, check.nameSpace())};
}

CimService::Walk CimService::walk(const AssociatorNamesRequest& request) const
{
    return walkFrom(request,
                    [&](const InputCheck& check, const ClassInfo& source)
                    {
                        return AssociationFilter{source,
                                                 check.filterClass(request.assocClass, "AssocClass"),
                                                 check.filterClass(request.resultClass, "ResultClass"),
                                                 request.role,
                                                 request.resultRole};
                    });
}

CimService::Walk CimService::walk(const ReferenceNamesRequest& request) const
{
    // The result of a reference request is the association itself.
    return walkFrom(
        request,
        [&](const InputCheck& check, const ClassInfo& source)
        {
            return AssociationFilter{
                source, check.filterClass(request.resultClass, "ResultClass"), nullptr, request.role, {}};
        });
}

void CimService::associators(const RequestContext& context,
                             const AssociatorsRequest& request,
                             Sink<Instance>& sink) const
{
    const Walk way = walk(request);
    OnceEach<Instance> once(sink);
    InstanceShaper shaper(way.mayRepeat() ? once : sink, request.properties, request.includeClassOrigin);
    follow(context,
           way,
           "Associators",
           originFlag(request.includeClassOrigin),
           shaper,
           [&](ProviderCall& call, CMPIAssociationMI* mi, CMPIObjectPath* path)
           {
               return mi->ft->associators(mi,
                                          call.context(),
                                          call.result(),
                                          path,
                                          ProviderCall::filter(request.assocClass),
                                          ProviderCall::filter(request.resultClass),
                                          ProviderCall::filter(request.role),
                                          ProviderCall::filter(request.resultRole),
                                          call.properties(request.properties));
           });
}

void CimService::associatorNames(const RequestContext& context,
                                 const AssociatorNamesRequest& request,
                                 Sink<ObjectPath>& sink) const
{
    const Walk way = walk(request);
    OnceEach<ObjectPath> once(sink);
    PathForwarder forwarder(way.mayRepeat() ? once : sink);
    follow(context,
           way,
           "AssociatorNames",
           0,
           forwarder,
           [&](ProviderCall& call, CMPIAssociationMI* mi, CMPIObjectPath* path)
           {
               return mi->ft->associatorNames(mi,
                                              call.context(),
                                              call.result(),
                                              path,
                                              ProviderCall::filter(request.assocClass),
                                              ProviderCall::filter(request.resultClass),
                                              ProviderCall::filter(request.role),
                                              ProviderCall::filter(request.resultRole));
           });
}

void CimService::references(const RequestContext& context,
                            const ReferencesRequest& request,
                            Sink<Instance>& sink) const
{
    InstanceShaper shaper(sink, request.properties, request.includeClassOrigin);
    follow(context,
           walk(request),
           "References",
           originFlag(request.includeClassOrigin),
           shaper,
           [&](ProviderCall& call, CMPIAssociationMI* mi, CMPIObjectPath* path)
           {
               return mi->ft->references(mi,
                                         call.context(),
                                         call.result(),
                                         path,
                                         ProviderCall::filter(request.resultClass),
                                         ProviderCall::filter(request.role),
                                         call.properties(request.properties));
           });
}

void CimService::referenceNames(const RequestContext& context,
                                const ReferenceNamesRequest& request,
                                Sink<ObjectPath>& sink) const
{
    PathForwarder forwarder(sink);
    follow(context,
           walk(request),
           "ReferenceNames",
           0,
           forwarder,
           [&](ProviderCall& call, CMPIAssociationMI* mi, CMPIObjectPath* path)
           {
               return mi->ft->referenceNames(mi,
                                             call.context(),
                                             call.result(),
                                             path,
                                             ProviderCall::filter(request.resultClass),
                                             ProviderCall::filter(request.role));
           });
}

} // namespace cimd
