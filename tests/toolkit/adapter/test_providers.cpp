// Providers of the demo classes: one function that does what the script of the class says, and their entry
// points.
#include "test_providers.h"

#include <adapter/Scalars.h>
#include <cimple/Provider_Handle.h>

#include <map>

namespace adapter_test
{

using namespace cimple;

namespace
{

std::map<std::string, Script>& scripts()
{
    static std::map<std::string, Script> all;
    return all;
}

} // namespace

void Script::reset()
{
    load = unload = status = 0;
    inside = insideCreate = insideLoad = nullptr;
    enable = nullptr;
    disable = nullptr;
    handle = nullptr;
    instances.clear();
    inMap = false;
    nativeAssociators = nativeReferences = nullptr;
    method = nullptr;
    loads = unloads = enumerations = handed = 0;
    model.clear();
    modelNameSpace.clear();
    keepModels = true;
}

Script& script(const char* className)
{
    return scripts()[className];
}

void resetScripts()
{
    for (auto& entry : scripts())
        entry.second.reset();
}

namespace
{

void enter(Script& script, const void* model)
{
    if (script.keepModels && model)
    {
        script.model = demo::text_of(static_cast<const Instance*>(model));
        script.modelNameSpace = static_cast<const Instance*>(model)->__name_space.c_str();
    }
    if (script.inside)
        script.inside();
}

Ref<Instance>* findIn(Script& script, const void* keys)
{
    for (Ref<Instance>& instance : script.instances)
        if (key_eq(static_cast<const Instance*>(keys), instance.ptr()))
            return &instance;
    return nullptr;
}

// Hands instances to a handler until it has enough, and closes.
template <class Proc>
int handOver(Script& script, const std::vector<Ref<Instance>>& instances, void* proc, void* data)
{
    typedef decltype(reinterpret_cast<Proc>(proc)) Function;
    const auto handle = reinterpret_cast<Function>(proc);
    for (const Ref<Instance>& instance : instances)
    {
        ref(instance.ptr());
        script.handed++;
        if (!handle(const_cast<Instance*>(instance.ptr()), {}, data))
            break;
    }
    handle(nullptr, {}, data);
    return script.status;
}

// The same from an instance map, which chooses by the model.
int handOverFromMap(Script& script, const void* model, void* proc, void* data)
{
    typedef Demo_RackAboveRack Pair;
    struct Counting
    {
        Script& script;
        Enum_Instances_Proc proc;
        void* data;
    } counting{script, reinterpret_cast<Enum_Instances_Proc>(proc), data};
    const auto count = [](Instance* instance, Enum_Instances_Status status, void* to)
    {
        const Counting& target = *static_cast<Counting*>(to);
        target.script.handed++;
        return target.proc(instance, status, target.data);
    };
    Instance_Map<Pair> map;
    for (Ref<Instance> instance : script.instances)
        map.insert(static_cast<Pair*>(instance.steal()));
    Enum_Instances_Handler<Pair> handler(count, &counting);
    map.enum_instances(static_cast<const Pair*>(model), &handler);
    counting.proc(nullptr, {}, data);
    return script.status;
}

// What an association provider answers itself, if it does.
template <class Proc>
int native(Script& script,
           const std::vector<Ref<Instance>>* answer,
           std::initializer_list<void*> filters,
           void* proc,
           void* data)
{
    if (!answer)
        return -1;
    script.filters.clear();
    for (const void* filter : filters)
        script.filters += std::string(static_cast<const String*>(filter)->c_str()) + ";";
    return handOver<Proc>(script, *answer, proc, data);
}

// What the script says; without a word from it, OK or what stands in the way.
int answer(const Script& script, bool fine, int otherwise)
{
    return script.status || fine ? script.status : otherwise;
}

int create(Script& script, void** provider)
{
    if (script.insideCreate)
        script.insideCreate();
    script.alive++;
    *provider = &script;
    return 0;
}

int load(Script& script)
{
    script.loads++;
    if (script.insideLoad)
        script.insideLoad();
    return script.load;
}

int modify(Script& script, const void* model, const void* instance)
{
    enter(script, model);
    Ref<Instance>* const found = findIn(script, instance);
    const int status = answer(script, found, MODIFY_INSTANCE_NOT_FOUND);
    if (status == 0)
        copy(found->ptr(), static_cast<const Instance*>(instance), static_cast<const Instance*>(model));
    return status;
}

int enable(Script& script, void* proc, void* data)
{
    const auto handle = reinterpret_cast<Indication_Proc>(proc);
    script.handle = [handle, data](Instance* indication) { return handle(indication, data); };
    return script.enable ? script.enable(script.handle) : 0;
}

int disable(Script& script)
{
    const int status = script.disable ? script.disable() : 0;
    if (!status)
        script.handle(nullptr);
    return status;
}

// clang-format off
int proc(const Registration* registration, int operation,
         void* arg0, void* arg1, void* arg2, void* arg3, void* arg4, void* arg5, void* arg6, void* /*arg7*/)
// clang-format on
{
    Script& script = adapter_test::script(registration->meta_class->name);
    auto* const instance = static_cast<Instance*>(arg1);
    switch (operation)
    {
    case OPERATION_CREATE_PROVIDER:
        return create(script, static_cast<void**>(arg0));
    case OPERATION_DESTROY_PROVIDER:
        script.alive--;
        return 0;
    case OPERATION_LOAD:
        return load(script);
    case OPERATION_UNLOAD:
        script.unloads++;
        return script.unload;
    case OPERATION_GET_INSTANCE:
    {
        enter(script, arg1);
        const Ref<Instance>* const found = findIn(script, arg1);
        const int status = answer(script, found, GET_INSTANCE_NOT_FOUND);
        if (status == 0)
            *static_cast<Instance**>(arg2) = clone(found->ptr());
        return status;
    }
    case OPERATION_ENUM_INSTANCES:
        enter(script, arg1);
        script.enumerations++;
        if (script.inMap)
            return handOverFromMap(script, arg1, arg2, arg3);
        return handOver<Enum_Instances_Proc>(script, script.instances, arg2, arg3);
    case OPERATION_CREATE_INSTANCE:
    {
        enter(script, arg1);
        const int status = answer(script, !findIn(script, arg1), CREATE_INSTANCE_DUPLICATE);
        if (status == 0)
            script.instances.emplace_back(clone(instance));
        return status;
    }
    case OPERATION_DELETE_INSTANCE:
    {
        enter(script, arg1);
        Ref<Instance>* const found = findIn(script, arg1);
        const int status = answer(script, found, DELETE_INSTANCE_NOT_FOUND);
        if (status == 0)
            script.instances.erase(script.instances.begin() + (found - script.instances.data()));
        return status;
    }
    case OPERATION_MODIFY_INSTANCE:
        return modify(script, arg1, arg2);
    case OPERATION_INVOKE_METHOD:
        enter(script, arg1);
        if (!script.method)
            return -1;
        script.method(static_cast<Instance*>(arg2));
        return script.status;
    case OPERATION_ENUM_ASSOCIATOR_NAMES:
    case OPERATION_ENUM_ASSOCIATORS:
        return native<Enum_Associators_Proc>(
            script, script.nativeAssociators, {arg2, arg3, arg4}, arg5, arg6);
    case OPERATION_ENUM_REFERENCES:
        return native<Enum_References_Proc>(script, script.nativeReferences, {arg3}, arg4, arg5);
    case OPERATION_ENABLE_INDICATIONS:
        return enable(script, arg1, arg2);
    case OPERATION_DISABLE_INDICATIONS:
        return disable(script);
    default:
        return -1;
    }
}

Registration* registrations = nullptr;
template <class Class>
Registration registration("Adapter_Test_Module", "Provider", proc, &Class::static_meta_class, registrations);
template <class Class>
__CMPI_Static_Data staticData;

template <class Class, char kKind>
void* factory(void* broker, void* context, void* status)
{
    return __cimple_cmpi_create(
        &staticData<Class>, &registration<Class>, broker, context, "Provider", kKind, status);
}

template <class Class>
const test_broker::Factories instanceProvider = {factory<Class, 'I'>, factory<Class, 'M'>, nullptr, nullptr};
template <class Class>
const test_broker::Factories associationProvider = {
    factory<Class, 'I'>, factory<Class, 'M'>, factory<Class, 'A'>, nullptr};

} // namespace

const test_broker::Factories rackProvider = instanceProvider<Demo_Rack>;
const test_broker::Factories elementProvider = instanceProvider<Demo_Element>;
const test_broker::Factories sensorProvider = instanceProvider<Demo_Sensor>;
const test_broker::Factories everythingProvider = instanceProvider<Demo_Everything>;
const test_broker::Factories labProvider = instanceProvider<Demo_Lab>;
const test_broker::Factories sensorInRackProvider = associationProvider<Demo_SensorInRack>;
const test_broker::Factories rackAboveRackProvider = associationProvider<Demo_RackAboveRack>;
const test_broker::Factories dependencyProvider = associationProvider<Demo_Dependency>;
const test_broker::Factories alertProvider = {
    nullptr, factory<Demo_SensorAlert, 'M'>, nullptr, factory<Demo_SensorAlert, 'N'>};

Ref<Instance> rack(const char* name)
{
    return Ref<Instance>(demo::rack(name).steal());
}

Ref<Instance> sensor(uint32 id, const char* label)
{
    Ref<Demo_Sensor> sensor = demo::sensor(id);
    if (label)
        sensor->Label.set(label);
    return Ref<Instance>(sensor.steal());
}

Ref<Instance> sensorInRack(const char* rackName, uint32 sensorId)
{
    return Ref<Instance>(demo::sensor_in_rack(rackName, sensorId).steal());
}

Ref<Instance> alert(const char* text)
{
    Demo_SensorAlert* alert = Demo_SensorAlert::create(true);
    alert->Text.set(text);
    return Ref<Instance>(alert);
}

Ref<Instance> rackAboveRack(const char* upper, const char* lower)
{
    return Ref<Instance>(demo::rack_above_rack(upper, lower).steal());
}

std::vector<test_broker::Named> schemaOf(const std::string& className)
{
    using test_broker::Value;
    std::vector<test_broker::Named> schema;
    const Meta_Class* const metaClass = find_meta_class(&Demo_Rack::static_meta_class, className.c_str());
    if (!metaClass)
        return schema;
    for (const Meta_Feature* feature : features_of(metaClass))
    {
        const Meta_Property* mp = as_property(feature);
        if (is_key(feature) || feature->flags & CIMPLE_FLAG_METHOD)
            continue;
        const CMPIType type = mp ? cimple_cmpi::typeOf(mp) : cimple_cmpi::typeOf(as_reference(feature));
        Value value = type == CMPI_boolean ? Value::boolean(true) : Value::number(type, 99);
        if (type == CMPI_string || type == CMPI_dateTime)
            value.text = type == CMPI_string ? "of the schema" : "19990909090909.090909+000";
        const bool composed = type & CMPI_ARRAY || type == CMPI_instance || type == CMPI_ref;
        schema.emplace_back(feature->name, composed ? Value::nullOf(type) : value);
    }
    schema.emplace_back("NewerState", Value::integer(CMPI_uint16, 12));
    schema.emplace_back("NewerText", Value::nullOf(CMPI_string));
    return schema;
}

test_broker::Path classPath(const char* className)
{
    return {"root/demo", className, {}};
}

test_broker::Path rackPath(const char* name)
{
    return {"root/demo", "Demo_Rack", {{"Name", test_broker::Value::string(name)}}};
}

test_broker::Path sensorPath(uint32 id)
{
    return {"root/demo", "Demo_Sensor", {{"Id", test_broker::Value::integer(CMPI_uint32, id)}}};
}

test_broker::Value limits(int low)
{
    const test_broker::Value number = test_broker::Value::integer(CMPI_sint32, CMPIUint64(low));
    return test_broker::Value::instance({classPath("Demo_Limits"), {{"Low", number}}});
}

} // namespace adapter_test
