// Entry points of the providers, and what requests and answers are made of.
#include "test_providers.h"

#include <adapter/scalars.h>
#include <cimple/Provider_Handle.h>

namespace adapter_test
{

using namespace cimple;

namespace
{

// clang-format off
template <class Class, template <class> class Kind>
int proc(const Registration* registration, int operation,
         void* arg0, void* arg1, void* arg2, void* arg3, void* arg4, void* arg5, void* arg6, void* arg7)
{
    if (operation == OPERATION_INVOKE_METHOD)
        return script<Class>().invoke(static_cast<Instance*>(arg1), static_cast<Instance*>(arg2));
    return Kind<Scripted<Class>>::proc(
        registration, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7);
}
// clang-format on

Registration* registrations = nullptr;
template <class Class, template <class> class Kind>
Registration registration(
    "Adapter_Test_Module", "Provider", proc<Class, Kind>, &Class::static_meta_class, registrations);
template <class Class>
__CMPI_Static_Data staticData;

template <class Class, template <class> class Kind, char kMi>
void* factory(void* broker, void* context, void* status)
{
    return __cimple_cmpi_create(
        &staticData<Class>, &registration<Class, Kind>, broker, context, "Provider", kMi, status);
}

template <class Class>
const test_broker::Factories instanceProvider = {factory<Class, Instance_Provider_Proc_T, 'I'>,
                                                 factory<Class, Instance_Provider_Proc_T, 'M'>};
template <class Class>
const test_broker::Factories associationProvider = {factory<Class, Association_Provider_Proc_T, 'I'>,
                                                    factory<Class, Association_Provider_Proc_T, 'M'>,
                                                    factory<Class, Association_Provider_Proc_T, 'A'>};

} // namespace

const test_broker::Factories rackProvider = instanceProvider<Demo_Rack>;
const test_broker::Factories elementProvider = instanceProvider<Demo_Element>;
const test_broker::Factories sensorProvider = instanceProvider<Demo_Sensor>;
const test_broker::Factories everythingProvider = instanceProvider<Demo_Everything>;
const test_broker::Factories labProvider = instanceProvider<Demo_Lab>;
const test_broker::Factories sensorInRackProvider = associationProvider<Demo_SensorInRack>;
const test_broker::Factories rackAboveRackProvider = associationProvider<Demo_RackAboveRack>;
const test_broker::Factories dependencyProvider = associationProvider<Demo_Dependency>;
const test_broker::Factories alertProvider = {nullptr,
                                              factory<Demo_SensorAlert, Indication_Provider_Proc_T, 'M'>,
                                              nullptr,
                                              factory<Demo_SensorAlert, Indication_Provider_Proc_T, 'N'>};

std::vector<test_broker::Named> schemaOf(const std::string& className)
{
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
        std::string value = test_broker::typeName(type) + ":99";
        if (type & CMPI_ARRAY || type == CMPI_instance || type == CMPI_ref)
            value = test_broker::nullOf(type);
        else if (type == CMPI_boolean)
            value = "true";
        else if (type == CMPI_string)
            value = "\"of the schema\"";
        else if (type == CMPI_dateTime)
            value = "d:19990909090909.090909+000";
        schema.emplace_back(feature->name, value);
    }
    schema.emplace_back("NewerState", "u16:12");
    schema.emplace_back("NewerText", "string:null");
    return schema;
}

} // namespace adapter_test
