// A module's registration list and CMPI entry points, as the macros write them.
#include "demo_objects.h"
#include <gtest/gtest.h>

using namespace cimple;

CIMPLE_NAMESPACE_BEGIN
struct Demo_Rack_Provider
{
    typedef Demo_Rack Class;
};
struct Demo_SensorInRack_Provider
{
    typedef Demo_SensorInRack Class;
};
struct Demo_SensorAlert_Provider
{
    typedef Demo_SensorAlert Class;
    static int proc(const Registration*, int, void*, void*, void*, void*, void*, void*, void*, void*)
    {
        return 3;
    }
};
CIMPLE_NAMESPACE_END

static int __cimple_Demo_Rack_Provider_proc(
    const Registration*, int, void*, void*, void*, void*, void*, void*, void*, void*)
{
    return 1;
}
static int __cimple_Demo_SensorInRack_Provider_proc(
    const Registration*, int, void*, void*, void*, void*, void*, void*, void*, void*)
{
    return 2;
}

CIMPLE_MODULE(Demo_Module);
CIMPLE_INSTANCE_PROVIDER(Demo_Rack_Provider);
CIMPLE_ASSOCIATION_PROVIDER(Demo_SensorInRack_Provider);
CIMPLE_PROVIDER(Demo_SensorAlert_Provider);
CIMPLE_CLASS_DEPENDENCY(Demo_Limits);

CIMPLE_CMPI_INSTANCE_PROVIDER(Demo_Rack_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER2(Demo_Rack_Provider, Demo_Rack);
CIMPLE_CMPI_ASSOCIATION_PROVIDER(Demo_SensorInRack_Provider);
CIMPLE_CMPI_ASSOCIATION_PROVIDER2(Demo_SensorInRack_Provider, Demo_SensorInRack);
CIMPLE_CMPI_INDICATION_PROVIDER(Demo_SensorAlert_Provider);
CIMPLE_CMPI_INDICATION_PROVIDER2(Demo_SensorAlert_Provider, Demo_SensorAlert);

namespace
{
void* adapter_args[7];
int interface;
} // namespace

// In the adapter's place: keeps what it is called with.
extern "C" int cimple_cmpi_adapter(
    void* arg0, void* arg1, void* arg2, void* arg3, void* arg4, void* arg5, void* arg6, void* arg7)
{
    void* const args[7] = {arg0, arg1, arg2, arg3, arg4, arg5, arg6};
    std::copy(args, args + 7, adapter_args);
    *static_cast<void**>(arg7) = &interface;
    return 0;
}

namespace
{
TEST(RegistrationTest, ListsProvidersLastFirst)
{
    const char* const names[] = {
        "Demo_SensorAlert_Provider", "Demo_SensorInRack_Provider", "Demo_Rack_Provider"};
    const Meta_Class* const classes[] = {&Demo_SensorAlert::static_meta_class,
                                         &Demo_SensorInRack::static_meta_class,
                                         &Demo_Rack::static_meta_class};
    int answer = 3;
    const Registration* registration = cimple_module();
    for (size_t i = 0; i < 3; i++, answer--, registration = registration->next)
    {
        ASSERT_NE(registration, nullptr);
        EXPECT_STREQ(registration->provider_name, names[i]);
        EXPECT_STREQ(registration->module_name, "Demo_Module");
        EXPECT_EQ(registration->meta_class, classes[i]);
        EXPECT_EQ(registration->provider_proc(registration, 0, 0, 0, 0, 0, 0, 0, 0, 0), answer);
    }
    EXPECT_EQ(registration, nullptr);
}

TEST(RegistrationTest, EntryPointsCallTheAdapter)
{
    typedef void* (*Entry)(void*, void*, void*);
    const struct
    {
        Entry entry;
        const char* provider;
        const Registration* registration;
        void* block;
        char kind;
    } rows[] = {
#define ROW(P, TYPE, KIND) {P##_Create_##TYPE##MI, #P, &_cimple_registration_##P, &_cmpi_static_data##P, KIND}
#define FORWARD(C, P, TYPE, KIND)                                                                            \
    {                                                                                                        \
        C##_Create_##TYPE##MI, #P, &_cimple_registration_##P, &_cmpi_static_data##P, KIND                    \
    }
        ROW(Demo_Rack_Provider, Instance, 'I'),
        ROW(Demo_Rack_Provider, Method, 'M'),
        ROW(Demo_SensorInRack_Provider, Instance, 'I'),
        ROW(Demo_SensorInRack_Provider, Method, 'M'),
        ROW(Demo_SensorInRack_Provider, Association, 'A'),
        ROW(Demo_SensorAlert_Provider, Method, 'M'),
        ROW(Demo_SensorAlert_Provider, Indication, 'N'),
        FORWARD(Demo_Rack, Demo_Rack_Provider, Instance, 'I'),
        FORWARD(Demo_Rack, Demo_Rack_Provider, Method, 'M'),
        FORWARD(Demo_SensorInRack, Demo_SensorInRack_Provider, Association, 'A'),
        FORWARD(Demo_SensorAlert, Demo_SensorAlert_Provider, Method, 'M'),
        FORWARD(Demo_SensorAlert, Demo_SensorAlert_Provider, Indication, 'N'),
#undef ROW
#undef FORWARD
    };
    int broker = 0;
    int context = 0;
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.entry(&broker, &context, nullptr), &interface);
        EXPECT_EQ(reinterpret_cast<size_t>(adapter_args[0]), size_t('C'));
        EXPECT_EQ(adapter_args[1], row.block) << row.provider;
        EXPECT_EQ(adapter_args[2], row.registration) << row.provider;
        EXPECT_EQ(adapter_args[3], &broker);
        EXPECT_EQ(adapter_args[4], &context);
        EXPECT_STREQ(static_cast<const char*>(adapter_args[5]), row.provider);
        EXPECT_EQ(reinterpret_cast<size_t>(adapter_args[6]), size_t(row.kind)) << row.provider;
    }
}
} // namespace
