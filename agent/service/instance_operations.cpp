// Operations on instances.
#include "agent/cim/CimError.h"
#include "agent/log/log.h"
#include "agent/service/CimService.h"
#include "agent/service/result_shaping.h"

#include <algorithm>

namespace cimd
{
namespace
{

CMPIFlags readFlags(bool deepInheritance, bool includeClassOrigin)
{
    return (deepInheritance ? CMPI_FLAG_DeepInheritance : 0U) |
           (includeClassOrigin ? CMPI_FLAG_IncludeClassOrigin : 0U);
}

void checkKeysAgree(const Instance& change, const ObjectPath& path)
{
    for (const KeyBinding& key : path.keys())
        if (const CimValue* value = change.find(key.name); value && !value->isNull() && *value != key.value)
            throw CimError(CimStatus::InvalidParameter,
                           "key property " + key.name.str() +
                               " differs from the path of the instance to modify");
}

// Whether an instance of the path is the one that was asked for. References may name their objects otherwise:
// a provider may know several names of one.
bool isAskedFor(const ObjectPath& path, const ObjectPath& asked)
{
    const auto agrees = [&asked](const KeyBinding& key)
    {
        const CimValue* value = asked.findKey(key.name);
        return value && (key.value.type() == CimType::Reference || *value == key.value);
    };
    return path.className() == asked.className() && path.keys().size() == asked.keys().size() &&
           std::all_of(path.keys().begin(), path.keys().end(), agrees);
}

void checkListed(const PropertyList& list, const ClassInfo& info)
{
    if (!list)
        return;
    for (const CimName& name : *list)
        if (!info.findProperty(name.str()))
            throw CimError(CimStatus::InvalidParameter,
                           "PropertyList: class " + info.name().str() + " has no property " + name.str());
}

} // namespace

InputCheck CimService::in(const std::string& nameSpace) const
{
    for (const std::string& known : _providers.nameSpaces())
        if (equalNoCase(known, nameSpace))
            return {_repository, _providers.nameSpaces(), known};
    throw CimError(CimStatus::InvalidNamespace, "namespace " + nameSpace + " does not exist");
}

std::vector<const ProviderEntry*> CimService::instanceProviders(const ClassInfo& info,
                                                                const std::string& nameSpace,
                                                                const char* operation) const
{
    auto entries = _providers.family(info, ProviderKind::Instance, nameSpace);
    if (entries.empty())
        throw CimError(CimStatus::NotSupported,
                       std::string(operation) + ": no provider serves class " + info.name().str() +
                           " or a subclass of it");
    return entries;
}

const ProviderEntry& CimService::providerOf(const ClassInfo& info,
                                            ProviderKind kind,
                                            const std::string& nameSpace,
                                            const char* operation) const
{
    const ProviderEntry* entry = _providers.find(info, kind, nameSpace);
    if (!entry)
        throw CimError(CimStatus::NotSupported,
                       std::string(operation) + ": no provider serves class " + info.name().str());
    return *entry;
}

void CimService::reportNotDone(const ProviderEntry& entry, const char* operation)
{
    log(LogLevel::Warning,
        "providers",
        operationText(operation, entry.info->name().str()) + "provider " + entry.provider->name() +
            " succeeded without saying that it was done; said once for this provider");
}

void CimService::enumerateInstances(const RequestContext& context,
                                    const EnumerateInstancesRequest& request,
                                    Sink<Instance>& sink) const
{
    constexpr const char* kOperation = "EnumerateInstances";
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.className);
    const auto entries = instanceProviders(info, check.nameSpace(), kOperation);
    InstanceShaper shaper(
        sink, request.properties, request.includeClassOrigin, request.deepInheritance ? nullptr : &info);
    callAll(context,
            entries,
            check.nameSpace(),
            kOperation,
            readFlags(request.deepInheritance, request.includeClassOrigin),
            shaper,
            &Provider::instance,
            [&](ProviderCall& call, CMPIInstanceMI* mi, const ClassInfo& called)
            {
                return mi->ft->enumerateInstances(mi,
                                                  call.context(),
                                                  call.result(),
                                                  call.path({check.nameSpace(), called.name()}),
                                                  call.properties(request.properties));
            });
}

void CimService::enumerateInstanceNames(const RequestContext& context,
                                        const EnumerateInstanceNamesRequest& request,
                                        Sink<ObjectPath>& sink) const
{
    constexpr const char* kOperation = "EnumerateInstanceNames";
    const InputCheck check = in(request.nameSpace);
    const auto entries =
        instanceProviders(check.classNamed(request.className), check.nameSpace(), kOperation);
    PathForwarder forwarder(sink);
    callAll(context,
            entries,
            check.nameSpace(),
            kOperation,
            0,
            forwarder,
            &Provider::instance,
            [&](ProviderCall& call, CMPIInstanceMI* mi, const ClassInfo& called)
            {
                return mi->ft->enumerateInstanceNames(
                    mi, call.context(), call.result(), call.path({check.nameSpace(), called.name()}));
            });
}

Instance CimService::getInstance(const RequestContext& context, const GetInstanceRequest& request) const
{
    constexpr const char* kOperation = "GetInstance";
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.path.className());
    const ObjectPath path = check.instancePath(request.path, info);
    const ProviderEntry& entry = providerOf(info, ProviderKind::Instance, check.nameSpace(), kOperation);
    Collector<Instance> found;
    InstanceShaper shaper(found, request.properties, request.includeClassOrigin);
    call(context,
         entry,
         check.nameSpace(),
         kOperation,
         readFlags(false, request.includeClassOrigin),
         shaper,
         &Provider::instance,
         [&](ProviderCall& each, CMPIInstanceMI* mi)
         {
             return mi->ft->getInstance(
                 mi, each.context(), each.result(), each.path(path), each.properties(request.properties));
         });
    if (found.items.empty())
        throw CimError(CimStatus::NotFound, "there is no instance " + path.text());
    if (found.items.size() > 1)
        throw CimError(CimStatus::Failed, "the provider returned several instances for " + path.text());
    Instance& instance = found.items.front();
    if (!isAskedFor(instance.path(), path))
        throw CimError(CimStatus::Failed,
                       "the provider returned " + instance.path().text() + " for " + path.text());
    return std::move(instance);
}

ObjectPath CimService::createInstance(const RequestContext& context,
                                      const CreateInstanceRequest& request) const
{
    constexpr const char* kOperation = "CreateInstance";
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.instance.className());
    Instance instance = check.instance(request.instance, info);
    instance.setPath({check.nameSpace(), info.name()});
    const ProviderEntry& entry = providerOf(info, ProviderKind::Instance, check.nameSpace(), kOperation);
    Collector<ObjectPath> created;
    PathForwarder forwarder(created);
    call(context,
         entry,
         check.nameSpace(),
         kOperation,
         0,
         forwarder,
         &Provider::instance,
         [&](ProviderCall& each, CMPIInstanceMI* mi)
         {
             return mi->ft->createInstance(
                 mi, each.context(), each.result(), each.path(instance.path()), each.instance(instance));
         });
    if (created.items.size() != 1)
        throw CimError(CimStatus::Failed,
                       operationText(kOperation, info.name().str()) + "the provider returned " +
                           (created.items.empty() ? "no path" : "more than one path"));
    return std::move(created.items.front());
}

void CimService::modifyInstance(const RequestContext& context, const ModifyInstanceRequest& request) const
{
    constexpr const char* kOperation = "ModifyInstance";
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.instance.path().className());
    if (!request.instance.className().empty() && request.instance.className() != info.name())
        throw CimError(CimStatus::InvalidParameter,
                       "the instance is of class " + request.instance.className().str() +
                           " but its path of class " + info.name().str());
    const ObjectPath path = check.instancePath(request.instance.path(), info);
    Instance change = check.instance(request.instance, info);
    checkKeysAgree(change, path);
    checkListed(request.properties, info);
    change.setPath(path);
    const ProviderEntry& entry = providerOf(info, ProviderKind::Instance, check.nameSpace(), kOperation);
    PathIgnorer ignorer;
    call(context,
         entry,
         check.nameSpace(),
         kOperation,
         0,
         ignorer,
         &Provider::instance,
         [&](ProviderCall& each, CMPIInstanceMI* mi)
         {
             return mi->ft->modifyInstance(mi,
                                           each.context(),
                                           each.result(),
                                           each.path(path),
                                           each.instance(change),
                                           each.properties(request.properties));
         });
}

void CimService::deleteInstance(const RequestContext& context, const DeleteInstanceRequest& request) const
{
    constexpr const char* kOperation = "DeleteInstance";
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.path.className());
    const ObjectPath path = check.instancePath(request.path, info);
    const ProviderEntry& entry = providerOf(info, ProviderKind::Instance, check.nameSpace(), kOperation);
    PathIgnorer ignorer;
    call(context,
         entry,
         check.nameSpace(),
         kOperation,
         0,
         ignorer,
         &Provider::instance,
         [&](ProviderCall& each, CMPIInstanceMI* mi)
         { return mi->ft->deleteInstance(mi, each.context(), each.result(), each.path(path)); });
}

} // namespace cimd
