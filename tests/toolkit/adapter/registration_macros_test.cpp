// The registration macros, as modules write them: with a semicolon behind each, or without.
#include "Demo_Rack.h"
#include "Demo_Sensor.h"
#include "Demo_SensorAlert.h"
#include "Demo_SensorInRack.h"

#include <gtest/gtest.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic error "-Wpedantic"
// clang-format off
namespace cimple
{

template <class CLASS>
struct Registered_Provider
{
    typedef CLASS Class;
    static int proc(const Registration*, int, void*, void*, void*, void*, void*, void*, void*, void*) { return -1; }
};
struct Rack_Provider : Registered_Provider<Demo_Rack> {};
struct Sensor_Provider : Registered_Provider<Demo_Sensor> {};
struct Link_Provider : Registered_Provider<Demo_SensorInRack> {};
struct Alert_Provider : Registered_Provider<Demo_SensorAlert> {};
constexpr Provider_Proc __cimple_Sensor_Provider_proc = Sensor_Provider::proc;
constexpr Provider_Proc __cimple_Link_Provider_proc = Link_Provider::proc;
constexpr Provider_Proc __cimple_Alert_Provider_proc = Alert_Provider::proc;

} // namespace cimple
using namespace cimple;

CIMPLE_MODULE(Macro_Test_Module)
CIMPLE_CLASS_DEPENDENCY(Demo_Rack)
CIMPLE_PROVIDER(Rack_Provider)
CIMPLE_INSTANCE_PROVIDER(Sensor_Provider)
CIMPLE_ASSOCIATION_PROVIDER(Link_Provider);
CIMPLE_INDICATION_PROVIDER(Alert_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER(Rack_Provider);
CIMPLE_CMPI_INSTANCE_PROVIDER(Sensor_Provider)
CIMPLE_CMPI_INSTANCE_PROVIDER2(Sensor_Provider, Demo_Sensor)
CIMPLE_CMPI_ASSOCIATION_PROVIDER(Link_Provider)
CIMPLE_CMPI_ASSOCIATION_PROVIDER2(Link_Provider, Demo_SensorInRack);
CIMPLE_CMPI_INDICATION_PROVIDER(Alert_Provider)
CIMPLE_CMPI_INDICATION_PROVIDER2(Alert_Provider, Demo_SensorAlert)
// clang-format on
#pragma GCC diagnostic pop

TEST(RegistrationMacros, ListEveryProviderTheLastFirst)
{
    std::vector<std::string> names;
    for (const Registration* one = cimple_module(); one; one = one->next)
        names.emplace_back(one->provider_name);
    EXPECT_EQ(
        names,
        (std::vector<std::string>{"Alert_Provider", "Link_Provider", "Sensor_Provider", "Rack_Provider"}));
}
