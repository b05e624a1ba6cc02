// Requests that providers make of the server: threads, indications and the client services.
#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "agent/service/ServiceBroker.h"

#include <type_traits>

namespace cimd
{
namespace
{

PropertyList propertyList(const char** properties)
{
    if (!properties)
        return std::nullopt;
    std::vector<CimName> names;
    for (; *properties; ++properties)
        names.emplace_back(*properties);
    return names;
}

CimName filterName(const char* name)
{
    return CimName(orEmpty(name));
}

// What every request of a provider starts with.
struct UpCall
{
    UpCall(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* target)
        : service(ServiceBroker::of(mb).service()), context(objectOf<ContextObject>(ctx)),
          path(objectOf<ObjectPathObject>(target).path()), nameSpace(path.nameSpace())
    {
        if (!nameSpace.empty())
            return;
        if (const CimValue* entry = context.find(CMPIInitNameSpace); entry && !entry->isNull())
            nameSpace = entry->asString();
    }

    bool hasFlag(CMPIFlags flag) const
    {
        const CimValue* flags = context.find(CMPIInvocationFlags);
        return flags && flags->hasType(CimType::Uint32, false) && (flags->asUnsigned() & flag) != 0;
    }

    const CimService& service;
    const ContextObject& context;
    const ObjectPath& path;
    std::string nameSpace;
};

CimValue elementOf(const Instance& instance)
{
    return CimValue::embedded(CimType::Instance, instance);
}

CimValue elementOf(const ObjectPath& path)
{
    return CimValue::reference(path);
}

// Takes results as elements of an enumeration.
template <class Item>
class Elements : public Sink<Item>
{
  public:
    void put(const Item& item) override { values.push_back(elementOf(item)); }

    CimValue::Elements values;
};

// What an operation of the service answers to a request.
template <class Item, class Request>
CMPIEnumeration* enumeration(const UpCall& call,
                             const Request& request,
                             void (CimService::*operation)(const RequestContext&, const Request&, Sink<Item>&)
                                 const)
{
    Elements<Item> found;
    (call.service.*operation)(call.context.request, request, found);
    constexpr bool kIsPath = std::is_same_v<Item, ObjectPath>;
    return track<EnumerationObject>(kIsPath ? CimType::Reference : CimType::Instance,
                                    std::move(found.values));
}

CMPIContext* prepareAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return answer(nullptr, [&] { return Broker::of(mb).prepareThread(objectOf<ContextObject>(ctx)); });
}

CMPIStatus attachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return answer([&] { Broker::of(mb).attachThread(ctx); });
}

CMPIStatus detachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return answer([&] { Broker::of(mb).detachThread(ctx); });
}

// Dropped, which is no error: nobody subscribes here. Indications leave through the module's own delivery.
CMPIStatus deliverIndication(const CMPIBroker* mb,
                             const CMPIContext* ctx,
                             const char* nameSpace,
                             const CMPIInstance* indication)
{
    return answer(
        [&]
        {
            Broker::of(mb);
            objectOf<ContextObject>(ctx);
            required(nameSpace, "the namespace of an indication");
            objectOf<InstanceObject>(indication);
        });
}

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* mb,
                                        const CMPIContext* ctx,
                                        const CMPIObjectPath* classPath,
                                        CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, classPath);
                      return enumeration(call,
                                         EnumerateInstanceNamesRequest{call.nameSpace, call.path.className()},
                                         &CimService::enumerateInstanceNames);
                  });
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* mb,
                                    const CMPIContext* ctx,
                                    const CMPIObjectPath* classPath,
                                    const char** properties,
                                    CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, classPath);
                      EnumerateInstancesRequest request;
                      request.nameSpace = call.nameSpace;
                      request.className = call.path.className();
                      request.deepInheritance = call.hasFlag(CMPI_FLAG_DeepInheritance);
                      request.properties = propertyList(properties);
                      return enumeration(call, request, &CimService::enumerateInstances);
                  });
}

CMPIInstance* getInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* instPath,
                          const char** properties,
                          CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIInstance*
                  {
                      const UpCall call(mb, ctx, instPath);
                      GetInstanceRequest request;
                      request.nameSpace = call.nameSpace;
                      request.path = call.path;
                      request.properties = propertyList(properties);
                      const Instance found = call.service.getInstance(call.context.request, request);
                      return track<InstanceObject>(Broker::of(mb).repository(), found);
                  });
}

CMPIObjectPath* createInstance(const CMPIBroker* mb,
                               const CMPIContext* ctx,
                               const CMPIObjectPath* classPath,
                               const CMPIInstance* instance,
                               CMPIStatus* rc)
{
    return answer(
        rc,
        [&]() -> CMPIObjectPath*
        {
            const UpCall call(mb, ctx, classPath);
            const CreateInstanceRequest request{call.nameSpace, objectOf<InstanceObject>(instance).given()};
            return track<ObjectPathObject>(call.service.createInstance(call.context.request, request));
        });
}

void modify(const UpCall& call, Instance instance, PropertyList properties)
{
    ModifyInstanceRequest request;
    request.nameSpace = call.nameSpace;
    request.instance = std::move(instance);
    request.instance.setPath(call.path);
    request.properties = std::move(properties);
    call.service.modifyInstance(call.context.request, request);
}

CMPIStatus modifyInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* instPath,
                          const CMPIInstance* instance,
                          const char** properties)
{
    return answer(
        [&]
        {
            const UpCall call(mb, ctx, instPath);
            modify(call, objectOf<InstanceObject>(instance).given(), propertyList(properties));
        });
}

CMPIStatus deleteInstance(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* instPath)
{
    return answer(
        [&]
        {
            const UpCall call(mb, ctx, instPath);
            call.service.deleteInstance(call.context.request, {call.nameSpace, call.path});
        });
}

CMPIEnumeration* execQuery(
    const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*, const char*, CMPIStatus* rc)
{
    if (rc)
        *rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return nullptr;
}

AssociatorNamesRequest associatorsRequest(const UpCall& call,
                                          const char* assocClass,
                                          const char* resultClass,
                                          const char* role,
                                          const char* resultRole)
{
    return {call.nameSpace,
            call.path,
            filterName(assocClass),
            filterName(resultClass),
            filterName(role),
            filterName(resultRole)};
}

ReferenceNamesRequest referencesRequest(const UpCall& call, const char* resultClass, const char* role)
{
    return {call.nameSpace, call.path, filterName(resultClass), filterName(role)};
}

CMPIEnumeration* associators(const CMPIBroker* mb,
                             const CMPIContext* ctx,
                             const CMPIObjectPath* instPath,
                             const char* assocClass,
                             const char* resultClass,
                             const char* role,
                             const char* resultRole,
                             const char** properties,
                             CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, instPath);
                      AssociatorsRequest request{
                          associatorsRequest(call, assocClass, resultClass, role, resultRole), {}};
                      request.properties = propertyList(properties);
                      return enumeration(call, request, &CimService::associators);
                  });
}

CMPIEnumeration* associatorNames(const CMPIBroker* mb,
                                 const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath,
                                 const char* assocClass,
                                 const char* resultClass,
                                 const char* role,
                                 const char* resultRole,
                                 CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, instPath);
                      return enumeration(call,
                                         associatorsRequest(call, assocClass, resultClass, role, resultRole),
                                         &CimService::associatorNames);
                  });
}

CMPIEnumeration* references(const CMPIBroker* mb,
                            const CMPIContext* ctx,
                            const CMPIObjectPath* instPath,
                            const char* resultClass,
                            const char* role,
                            const char** properties,
                            CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, instPath);
                      ReferencesRequest request{referencesRequest(call, resultClass, role), {}};
                      request.properties = propertyList(properties);
                      return enumeration(call, request, &CimService::references);
                  });
}

CMPIEnumeration* referenceNames(const CMPIBroker* mb,
                                const CMPIContext* ctx,
                                const CMPIObjectPath* instPath,
                                const char* resultClass,
                                const char* role,
                                CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, instPath);
                      return enumeration(
                          call, referencesRequest(call, resultClass, role), &CimService::referenceNames);
                  });
}

CMPIData invokeMethod(const CMPIBroker* mb,
                      const CMPIContext* ctx,
                      const CMPIObjectPath* objPath,
                      const char* method,
                      const CMPIArgs* in,
                      CMPIArgs* out,
                      CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, objPath);
                      InvokeMethodRequest request;
                      request.nameSpace = call.nameSpace;
                      request.path = call.path;
                      request.method = CimName(required(method, "the name of a method"));
                      if (in)
                          request.arguments = objectOf<ArgsObject>(in).arguments;
                      MethodResult answered = call.service.invokeMethod(call.context.request, request);
                      if (out)
                          objectOf<ArgsObject>(out).arguments = std::move(answered.out);
                      return toCmpi(answered.returnValue);
                  });
}

CMPIStatus setProperty(const CMPIBroker* mb,
                       const CMPIContext* ctx,
                       const CMPIObjectPath* instPath,
                       const char* name,
                       const CMPIValue* value,
                       CMPIType type)
{
    return answer(
        [&]
        {
            const UpCall call(mb, ctx, instPath);
            Instance change(call.path.className());
            change.set(CimName(required(name, "the name of a property")), fromCmpi(value, type));
            modify(call, std::move(change), propertyList(std::vector<const char*>{name, nullptr}.data()));
        });
}

CMPIData getProperty(const CMPIBroker* mb,
                     const CMPIContext* ctx,
                     const CMPIObjectPath* instPath,
                     const char* name,
                     CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const UpCall call(mb, ctx, instPath);
                      GetInstanceRequest request;
                      request.nameSpace = call.nameSpace;
                      request.path = call.path;
                      request.properties = {CimName(required(name, "the name of a property"))};
                      const Instance found = call.service.getInstance(call.context.request, request);
                      const CimValue* value = found.find(request.properties->front());
                      if (!value)
                          throw CmpiError(CMPI_RC_ERR_NO_SUCH_PROPERTY,
                                          "class " + found.className().str() + " has no property " + name);
                      return toCmpi(*value);
                  });
}

constexpr CMPIBrokerFT kUpCallTable{CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal |
                                        CMPI_MB_Indications | CMPI_MB_OSEncapsulationSupport |
                                        CMPI_MB_Supports_MemEnhancements,
                                    CMPIVersion200,
                                    "cimd",
                                    prepareAttachThread,
                                    attachThread,
                                    detachThread,
                                    deliverIndication,
                                    enumerateInstanceNames,
                                    getInstance,
                                    createInstance,
                                    modifyInstance,
                                    deleteInstance,
                                    execQuery,
                                    enumerateInstances,
                                    associators,
                                    associatorNames,
                                    references,
                                    referenceNames,
                                    invokeMethod,
                                    setProperty,
                                    getProperty};

} // namespace

ServiceBroker::ServiceBroker(const ClassRepository& repository) : Broker(repository, kUpCallTable) {}

const ServiceBroker& ServiceBroker::of(const CMPIBroker* handle)
{
    if (!handle || handle->bft != &kUpCallTable)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "not a broker that takes requests");
    return static_cast<const ServiceBroker&>(Broker::of(handle));
}

const CimService& ServiceBroker::service() const
{
    if (!_service)
        throw CmpiError(CMPI_RC_ERR_NOT_SUPPORTED, "the server takes no requests from providers yet");
    return *_service;
}

} // namespace cimd
