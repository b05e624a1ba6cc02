// Providers of the demo classes, their registration and their entry points.
#include "test_providers.h"

#include <demo_objects.h>

#include <adapter/Scalars.h>

#include <map>
#include <memory>

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
    keepHandler = false;
    instances.clear();
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

template <class C>
class Scripted
{
  public:
    typedef C Class;

    Scripted()
    {
        if (_script.insideCreate)
            _script.insideCreate();
        _script.alive++;
    }
    ~Scripted() { _script.alive--; }

    Load_Status load()
    {
        _script.loads++;
        if (_script.insideLoad)
            _script.insideLoad();
        return static_cast<Load_Status>(_script.load);
    }

    Unload_Status unload()
    {
        _script.unloads++;
        return static_cast<Unload_Status>(_script.unload);
    }

    Get_Instance_Status get_instance(const C* model, C*& instance)
    {
        Ref<Instance>* const found = enter(model, model);
        const Get_Instance_Status status = answer(found, GET_INSTANCE_NOT_FOUND);
        if (status == GET_INSTANCE_OK)
            instance = static_cast<C*>(clone(found->ptr()));
        return status;
    }

    Enum_Instances_Status enum_instances(const C* model, Enum_Instances_Handler<C>* handler)
    {
        enter(model, nullptr);
        _script.enumerations++;
        for (Ref<Instance>& instance : _script.instances)
        {
            ref(instance.ptr());
            _script.handed++;
            if (!handler->handle(static_cast<C*>(instance.ptr())))
                break;
        }
        return static_cast<Enum_Instances_Status>(_script.status);
    }

    Create_Instance_Status create_instance(C* instance)
    {
        const Create_Instance_Status status = answer(!enter(instance, instance), CREATE_INSTANCE_DUPLICATE);
        if (status == CREATE_INSTANCE_OK)
            _script.instances.emplace_back(clone(instance));
        return status;
    }

    Delete_Instance_Status delete_instance(const C* instance)
    {
        Ref<Instance>* const found = enter(instance, instance);
        const Delete_Instance_Status status = answer(found, DELETE_INSTANCE_NOT_FOUND);
        if (status == DELETE_INSTANCE_OK)
            _script.instances.erase(_script.instances.begin() + (found - _script.instances.data()));
        return status;
    }

    Modify_Instance_Status modify_instance(const C* model, const C* instance)
    {
        Ref<Instance>* const found = enter(model, instance);
        const Modify_Instance_Status status = answer(found, MODIFY_INSTANCE_NOT_FOUND);
        if (status == MODIFY_INSTANCE_OK)
            copy(found->ptr(), instance, model);
        return status;
    }

  protected:
    // The instance of these keys, or null.
    Ref<Instance>* enter(const Instance* model, const Instance* keys)
    {
        if (_script.keepModels && model)
        {
            _script.model = demo::text_of(model);
            _script.modelNameSpace = model->__name_space.c_str();
        }
        if (_script.inside)
            _script.inside();
        for (Ref<Instance>& instance : _script.instances)
            if (keys && key_eq(keys, instance.ptr()))
                return &instance;
        return nullptr;
    }

    // What the script says; without a word from it, OK or what stands in the way.
    template <class Status>
    Status answer(bool fine, Status otherwise)
    {
        if (_script.status)
            return static_cast<Status>(_script.status);
        return fine ? static_cast<Status>(0) : otherwise;
    }

    Script& _script = script<C>();
};

class Scripted_Alert : public Scripted<Demo_SensorAlert>
{
  public:
    typedef Indication_Handler<Demo_SensorAlert> Handler;

    Enable_Indications_Status enable_indications(Handler* handler)
    {
        _handler.reset(handler);
        const auto handle = [handler](Instance* x)
        { return handler->handle(static_cast<Demo_SensorAlert*>(x)); };
        const int status = _script.enable ? _script.enable(handle) : 0;
        if (status)
            _handler.reset();
        return static_cast<Enable_Indications_Status>(status);
    }

    Disable_Indications_Status disable_indications()
    {
        const int status = _script.disable ? _script.disable() : 0;
        if (!status && !_script.keepHandler)
            _handler.reset();
        return static_cast<Disable_Indications_Status>(status);
    }

  private:
    std::unique_ptr<Handler> _handler;
};

template <class C>
class Scripted_Association : public Scripted<C>
{
  public:
    Enum_Associator_Names_Status enum_associator_names(const Instance*,
                                                       const String& resultClass,
                                                       const String& role,
                                                       const String& resultRole,
                                                       Enum_Associator_Names_Handler<Instance>* handler)
    {
        return native(this->_script.nativeAssociators,
                      {resultClass, role, resultRole},
                      handler,
                      ENUM_ASSOCIATOR_NAMES_UNSUPPORTED);
    }

    Enum_Associators_Status enum_associators(const Instance*,
                                             const String& resultClass,
                                             const String& role,
                                             const String& resultRole,
                                             Enum_Associators_Handler<Instance>* handler)
    {
        return native(this->_script.nativeAssociators,
                      {resultClass, role, resultRole},
                      handler,
                      ENUM_ASSOCIATORS_UNSUPPORTED);
    }

    Enum_References_Status
    enum_references(const Instance*, const C*, const String& role, Enum_References_Handler<C>* handler)
    {
        return native(this->_script.nativeReferences, {role}, handler, ENUM_REFERENCES_UNSUPPORTED);
    }

  private:
    template <class Handler, class Status>
    Status native(const std::vector<Ref<Instance>>* answer,
                  const std::vector<String>& filters,
                  Handler* handler,
                  Status unsupported)
    {
        if (!answer)
            return unsupported;
        this->_script.filters.clear();
        for (const String& filter : filters)
            this->_script.filters += std::string(filter.c_str()) + ";";
        for (const Ref<Instance>& instance : *answer)
        {
            ref(instance.ptr());
            handler->handle(static_cast<decltype(handledBy(handler))>(const_cast<Instance*>(instance.ptr())));
        }
        return static_cast<Status>(this->_script.status);
    }

    // The type of what a handler takes.
    template <template <class> class Handler, class T>
    static T* handledBy(Handler<T>*);
};

} // namespace
} // namespace adapter_test

CIMPLE_NAMESPACE_BEGIN

#define TEST_PROVIDER_PARAMETERS                                                                             \
    const cimple::Registration *registration, int operation, void *arg0, void *arg1, void *arg2, void *arg3, \
        void *arg4, void *arg5, void *arg6, void *arg7
#define TEST_PROVIDER_ARGUMENTS registration, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7

// Methods fill in what the script says; a script without a method knows none.
#define TEST_PROVIDER(CLASS, BASE, PROC)                                                                     \
    class CLASS##_Provider : public adapter_test::BASE<CLASS>                                                \
    {                                                                                                        \
      public:                                                                                                \
        static int proc(TEST_PROVIDER_PARAMETERS)                                                            \
        {                                                                                                    \
            if (operation != OPERATION_INVOKE_METHOD)                                                        \
                return PROC<CLASS##_Provider>::proc(TEST_PROVIDER_ARGUMENTS);                                \
            CLASS##_Provider* const provider = static_cast<CLASS##_Provider*>(arg0);                         \
            provider->enter(static_cast<const Instance*>(arg1), nullptr);                                    \
            adapter_test::Script& script = provider->_script;                                                \
            if (!script.method)                                                                              \
                return -1;                                                                                   \
            script.method(static_cast<Instance*>(arg2));                                                     \
            return script.status;                                                                            \
        }                                                                                                    \
    }

TEST_PROVIDER(Demo_Rack, Scripted, Instance_Provider_Proc_T);
TEST_PROVIDER(Demo_Element, Scripted, Instance_Provider_Proc_T);
TEST_PROVIDER(Demo_Sensor, Scripted, Instance_Provider_Proc_T);
TEST_PROVIDER(Demo_Everything, Scripted, Instance_Provider_Proc_T);
TEST_PROVIDER(Demo_Lab, Scripted, Instance_Provider_Proc_T);
TEST_PROVIDER(Demo_SensorInRack, Scripted_Association, Association_Provider_Proc_T);
TEST_PROVIDER(Demo_RackAboveRack, Scripted_Association, Association_Provider_Proc_T);
TEST_PROVIDER(Demo_Dependency, Scripted_Association, Association_Provider_Proc_T);

struct Demo_SensorAlert_Provider : public adapter_test::Scripted_Alert,
                                   public Indication_Provider_Proc_T<Demo_SensorAlert_Provider>
{
};

CIMPLE_NAMESPACE_END

// Some are registered with a function of the module, some with their own.
#define TEST_PROC(CLASS)                                                                                     \
    static int __cimple_##CLASS##_Provider_proc(TEST_PROVIDER_PARAMETERS)                                    \
    {                                                                                                        \
        return cimple::CLASS##_Provider::proc(TEST_PROVIDER_ARGUMENTS);                                      \
    }
TEST_PROC(Demo_Rack)
TEST_PROC(Demo_SensorInRack)
TEST_PROC(Demo_SensorAlert)

CIMPLE_MODULE(Adapter_Test_Module);
CIMPLE_CLASS_DEPENDENCY(Demo_Limits);

CIMPLE_INSTANCE_PROVIDER(Demo_Rack_Provider);
CIMPLE_PROVIDER(Demo_Element_Provider);
CIMPLE_PROVIDER(Demo_Sensor_Provider);
CIMPLE_PROVIDER(Demo_Everything_Provider);
CIMPLE_PROVIDER(Demo_Lab_Provider);
CIMPLE_ASSOCIATION_PROVIDER(Demo_SensorInRack_Provider);
CIMPLE_PROVIDER(Demo_RackAboveRack_Provider);
CIMPLE_PROVIDER(Demo_Dependency_Provider);
CIMPLE_INDICATION_PROVIDER(Demo_SensorAlert_Provider);

CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Rack_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER2(Demo_Rack_Provider, Demo_Rack);
CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Element_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Sensor_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Everything_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Lab_Provider);
CIMPLE_CMPI_ASSOCIATION_PROVIDER(Demo_SensorInRack_Provider);
CIMPLE_CMPI_ASSOCIATION_PROVIDER(Demo_RackAboveRack_Provider);
CIMPLE_CMPI_ASSOCIATION_PROVIDER2(Demo_RackAboveRack_Provider, Demo_RackAboveRack);
CIMPLE_CMPI_ASSOCIATION_PROVIDER(Demo_Dependency_Provider);
CIMPLE_CMPI_INDICATION_PROVIDER(Demo_SensorAlert_Provider);
CIMPLE_CMPI_INDICATION_PROVIDER2(Demo_SensorAlert_Provider, Demo_SensorAlert);

namespace adapter_test
{

#define INSTANCE_FACTORIES(CLASS)                                                                            \
    {                                                                                                        \
        CLASS##_Create_InstanceMI, CLASS##_Create_MethodMI, nullptr, nullptr                                 \
    }
#define ASSOCIATION_FACTORIES(CLASS)                                                                         \
    {                                                                                                        \
        CLASS##_Create_InstanceMI, CLASS##_Create_MethodMI, CLASS##_Create_AssociationMI, nullptr            \
    }

// Some go through the entry points named after the class, some through those of the provider.
const test_broker::Factories rackProvider = INSTANCE_FACTORIES(Demo_Rack);
const test_broker::Factories elementProvider = INSTANCE_FACTORIES(Demo_Element_Provider);
const test_broker::Factories sensorProvider = INSTANCE_FACTORIES(Demo_Sensor_Provider);
const test_broker::Factories everythingProvider = INSTANCE_FACTORIES(Demo_Everything_Provider);
const test_broker::Factories labProvider = INSTANCE_FACTORIES(Demo_Lab_Provider);
const test_broker::Factories sensorInRackProvider = ASSOCIATION_FACTORIES(Demo_SensorInRack_Provider);
const test_broker::Factories rackAboveRackProvider = ASSOCIATION_FACTORIES(Demo_RackAboveRack);
const test_broker::Factories dependencyProvider = ASSOCIATION_FACTORIES(Demo_Dependency_Provider);
const test_broker::Factories alertProvider = {
    nullptr, Demo_SensorAlert_Create_MethodMI, nullptr, Demo_SensorAlert_Create_IndicationMI};

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
