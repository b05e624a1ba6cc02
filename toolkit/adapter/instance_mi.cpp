// The instance interface: enumerate, get, create, modify, delete.
#include "Call.h"
#include "ResultSink.h"
#include "scalars.h"
#include <cmpimacs.h>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

void sayDone(const CMPIResult* result)
{
    checkBroker(CMReturnDone(result), "the end of the result");
}

// What a result must be an instance of besides the provider's class; null if no more is asked.
const Meta_Class* wantedClass(const Call& call, const Meta_Class* modelClass)
{
    return modelClass == call.providerClass() ? nullptr : modelClass;
}

void enumerate(Call& call,
               const CMPIResult* result,
               const CMPIObjectPath* classPath,
               Deliver what,
               const char** properties)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(classPath));
    Ref<Instance> model = call.from().fromPath(classPath, modelClass, FromCmpi::kNoKeys);
    if (properties)
        filter_properties(model.ptr(), properties, true);
    ResultSink sink(call, result, nameSpaceOf(classPath), what, properties, wantedClass(call, modelClass));
    checkProvider(call.providerToRead().enum_instances(
        model.ptr(), ResultSink::receive<Instance*, Enum_Instances_Status>, &sink));
    sink.finish();
}

void get(Call& call, const CMPIResult* result, const CMPIObjectPath* path, const char** properties)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(path));
    Ref<Instance> model = call.from().fromPath(path, modelClass, FromCmpi::kAllKeys);
    filter_properties(model.ptr(), properties, true);

    Instance* found = nullptr;
    const Get_Instance_Status status = call.providerToRead().get_instance(model.ptr(), found);
    const Ref<Instance> instance(found);
    checkProvider(status);

    ResultSink sink(call,
                    result,
                    nameSpaceOf(path),
                    Deliver::Instances,
                    properties,
                    wantedClass(call, modelClass),
                    Results::One);
    if (sink.take(instance.ptr()) && sink.taken() == 0)
        throw Failure(CMPI_RC_ERR_NOT_FOUND,
                      std::string("the instance with these keys is a ") + instance->meta_class->name);
    sink.finish();
}

void create(Call& call, const CMPIResult* result, const CMPIObjectPath* classPath, const CMPIInstance* source)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(classPath));
    const std::string nameSpace = nameSpaceOf(classPath);
    // What a server fills in is welcome here: a new instance begins with the defaults of its class.
    Ref<Instance> instance = call.from().fromInstance(source, modelClass, nameSpace, FromCmpi::kRefuse);
    checkProvider(call.provider().create_instance(instance.ptr()));
    // The provider may have filled in keys.
    ResultSink sink(call, result, nameSpace, Deliver::Paths, nullptr, nullptr, Results::One);
    sink.take(instance.ptr());
    sink.finish();
}

// Keys may come in the path, in the instance or in both; where both have one they must agree.
void mergeKeys(Instance* instance, const Instance* keys)
{
    for (const Meta_Feature* feature : features_of(instance->meta_class))
    {
        if (!is_key(feature))
            continue;
        bool agree = true;
        if (const Meta_Property* mp = as_property(feature))
        {
            const void* field = __property_of(instance, mp);
            agree = null_of(mp, field) || property_eq(mp, field, __property_of(keys, mp));
        }
        else if (const Meta_Reference* mr = as_reference(feature))
        {
            const Instance* target = __ref_of(instance, mr);
            agree = !target || key_eq(target, __ref_of(keys, mr));
        }
        if (!agree)
            throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                          std::string("key ") + feature->name + " of path and instance differ");
    }
    copy_keys(instance, keys);
}

void modify(Call& call,
            const CMPIResult* result,
            const CMPIObjectPath* path,
            const CMPIInstance* source,
            const char** properties)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(path));
    for (const char** name = properties; name && *name; name++)
        if (!find_feature(modelClass, *name, CIMPLE_FLAG_PROPERTY | CIMPLE_FLAG_REFERENCE))
            throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                          std::string("class ") + modelClass->name + " has no property " + *name);
    const FromCmpi from = call.from();
    const Ref<Instance> keys = from.fromPath(path, modelClass, FromCmpi::kAllKeys);
    Ref<Instance> instance = from.fromInstance(source, modelClass, nameSpaceOf(path), FromCmpi::kRefuse);
    mergeKeys(instance.ptr(), keys.ptr());
    Ref<Instance> model(clone(instance.ptr()));
    filter_properties(
        model.ptr(), properties ? properties : from.meantBy(source, instance.ptr()).data(), true);
    checkProvider(call.provider().modify_instance(model.ptr(), instance.ptr()));
    sayDone(result);
}

void remove(Call& call, const CMPIResult* result, const CMPIObjectPath* path)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(path));
    const Ref<Instance> keys = call.from().fromPath(path, modelClass, FromCmpi::kAllKeys);
    checkProvider(call.provider().delete_instance(keys.ptr()));
    sayDone(result);
}

// --- the functions of the table

CMPIStatus cleanup(CMPIInstanceMI* mi, const CMPIContext* context, CMPIBoolean terminating)
{
    return StaticData::of(mi->hdl).cleanup(kInstanceMi, context, terminating);
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi,
                                  const CMPIContext* context,
                                  const CMPIResult* result,
                                  const CMPIObjectPath* classPath)
{
    const auto body = [&](Call& call) { enumerate(call, result, classPath, Deliver::Paths, nullptr); };
    return run(mi, context, "enumerate instance names", body);
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi,
                              const CMPIContext* context,
                              const CMPIResult* result,
                              const CMPIObjectPath* classPath,
                              const char** properties)
{
    const auto body = [&](Call& call) { enumerate(call, result, classPath, Deliver::Instances, properties); };
    return run(mi, context, "enumerate instances", body);
}

CMPIStatus getInstance(CMPIInstanceMI* mi,
                       const CMPIContext* context,
                       const CMPIResult* result,
                       const CMPIObjectPath* path,
                       const char** properties)
{
    const auto body = [&](Call& call) { get(call, result, path, properties); };
    return run(mi, context, "get instance", body);
}

CMPIStatus createInstance(CMPIInstanceMI* mi,
                          const CMPIContext* context,
                          const CMPIResult* result,
                          const CMPIObjectPath* classPath,
                          const CMPIInstance* source)
{
    const auto body = [&](Call& call) { create(call, result, classPath, source); };
    return run(mi, context, "create instance", body);
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi,
                          const CMPIContext* context,
                          const CMPIResult* result,
                          const CMPIObjectPath* path,
                          const CMPIInstance* source,
                          const char** properties)
{
    const auto body = [&](Call& call) { modify(call, result, path, source, properties); };
    return run(mi, context, "modify instance", body);
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi,
                          const CMPIContext* context,
                          const CMPIResult* result,
                          const CMPIObjectPath* path)
{
    const auto body = [&](Call& call) { remove(call, result, path); };
    return run(mi, context, "delete instance", body);
}

CMPIStatus execQuery(CMPIInstanceMI* mi,
                     const CMPIContext*,
                     const CMPIResult*,
                     const CMPIObjectPath*,
                     const char*,
                     const char*)
{
    const auto body = [] { throw Failure(CMPI_RC_ERR_NOT_SUPPORTED, "queries are not supported"); };
    return guarded(StaticData::of(mi->hdl), "execute query", body);
}

} // namespace

const CMPIInstanceMIFT kInstanceFunctions = {CMPIVersion200,
                                             CMPIVersion200,
                                             nullptr,
                                             cleanup,
                                             enumerateInstanceNames,
                                             enumerateInstances,
                                             getInstance,
                                             createInstance,
                                             modifyInstance,
                                             deleteInstance,
                                             execQuery};

} // namespace cimple_cmpi
