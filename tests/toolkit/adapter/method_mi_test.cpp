// The method interface: parameters in both directions, static methods, and mistakes.
#include "adapter_fixture.h"

namespace adapter_test
{
namespace
{

class MethodMi : public AdapterTest
{
  protected:
    Client& labs = client(labProvider);
};

const char kLabs[] = "root/demo:Demo_Lab";
const char kLab[] = "root/demo:Demo_Lab.Name=\"lab\"";

TEST_F(MethodMi, ParametersOfEveryKindGoThereAndBack)
{
    std::string seen;
    script<Demo_Lab>().method = [&](Instance* object)
    {
        auto* method = static_cast<Demo_Lab_Measure_method*>(object);
        seen = std::string(method->Where->Name.value.c_str()) + " " +
               std::to_string(method->Range->Low.value) + " " + std::to_string(method->Tags.value.size()) +
               " " + std::to_string(method->Route.value.size());
        method->Tags.value.append(9);
        method->Found = rack("found").steal();
        Demo_Limits* measured = Demo_Limits::create(true);
        measured->High.set(3);
        method->Measured.value.append(measured);
        method->Measured.null = 0;
        method->When.set(Datetime("20260314015926.535897+060"));
        method->return_value = Demo_Limits::create(true);
        method->return_value->Low.set(-1);
    };
    const Outcome outcome =
        labs.invokeMethod(kLab,
                          "MEASURE",
                          "where=<root/demo:Demo_Rack.Name=\"r1\">,Range=Demo_Limits{Low=s32:4},Tags=[u16:5],"
                          "Route=[<root/demo:Demo_Rack.Name=\"r2\">,<root/demo:Demo_Rack.Name=\"r3\">]");
    EXPECT_EQ(seen, "r1 4 1 2");
    EXPECT_EQ(outcome.texts(),
              Texts({"Demo_Limits{Low=s32:-1}", // by returnInstance
                     "Tags=[u16:5,u16:9]",
                     "Route=[<root/demo:Demo_Rack.Name=\"r2\">,<root/demo:Demo_Rack.Name=\"r3\">]",
                     "Found=<root/demo:Demo_Rack.Name=\"found\">",
                     "Measured=[Demo_Limits{High=s32:3}]",
                     "When=d:20260314015926.535897+060"}));
    EXPECT_NE(script<Demo_Lab>().model.find("Name = \"lab\""), std::string::npos);

    // Outputs that are NULL are left out, but arrays of references are never born NULL.
    script<Demo_Lab>().method = [](Instance*) {};
    EXPECT_EQ(labs.invokeMethod(kLab, "Measure").texts(), Texts({"Route=ref[]", "Measured=instance[]"}));
}

TEST_F(MethodMi, StaticMethodsTakeAClassOrAnInstance)
{
    script<Demo_Lab>().method = [](Instance* object)
    { static_cast<Demo_Lab_Count_method*>(object)->return_value.set(5); };
    for (const char* path : {kLabs, kLab})
        EXPECT_EQ(labs.invokeMethod(path, "count").texts(), Texts{"u32:5"});
    EXPECT_EQ(labs.invokeMethod(kLabs, "Measure").texts(),
              Texts{"4: Demo_Lab: method Measure: key Name is missing"});
}

TEST_F(MethodMi, MistakesAreNamed)
{
    script<Demo_Sensor>().method = [](Instance*) {};
    Client& sensors = client(sensorProvider);
    const std::pair<const char*, const char*> cases[] = {
        {"Traget=u32:1", "method Calibrate has no parameter Traget"},
        {"return_value=u32:1", "method Calibrate has no parameter return_value"},
        {"Drift=s32:1", "parameter Drift takes no input"},
        {"Target=\"1\"", "Target: string given where uint32 is expected"},
    };
    for (const auto& [in, complaint] : cases)
        EXPECT_EQ(sensors.invokeMethod(sensorPath(7), "Calibrate", in).texts(),
                  Texts{std::string("4: Demo_Sensor: method Calibrate: ") + complaint});
    for (const char* in : {"Target=u32:1", "Drift=s32:null"})
        EXPECT_TRUE(sensors.invokeMethod(sensorPath(7), "Calibrate", in).ok()) << in;
    EXPECT_EQ(sensors.invokeMethod(sensorPath(7), "Label").texts(), // a property
              Texts{"17: Demo_Sensor: method Label: class Demo_Sensor has no such method"});
    EXPECT_EQ(sensors.invokeMethod("root/demo:Demo_Unknown", "Reset").texts(),
              Texts{"5: Demo_Sensor: method Reset: class Demo_Unknown is unknown here"});
}

TEST_F(MethodMi, StatusesAndFailuresLeaveNoHalfOfAnAnswer)
{
    script<Demo_Lab>().method = [](Instance* object)
    {
        auto* method = static_cast<Demo_Lab_Measure_method*>(object);
        method->return_value = Demo_Limits::create(true);
        method->Found = Demo_Rack::create(true); // a path without its key
    };
    const Outcome outcome = labs.invokeMethod(kLab, "Measure");
    EXPECT_EQ(outcome.texts(), Texts{"1: Demo_Lab: method Measure: Found: key Name has no value"});
    EXPECT_TRUE(outcome.instances.empty() && outcome.out.empty());

    script<Demo_Lab>().method = [](Instance*) {};
    script<Demo_Lab>().status = INVOKE_METHOD_UNSUPPORTED;
    EXPECT_EQ(labs.invokeMethod(kLab, "Measure").texts(),
              Texts{"7: Demo_Lab: method Measure is not supported (status 131)"});
    // A method of the class that the provider does not know.
    script<Demo_Lab>().method = nullptr;
    EXPECT_EQ(labs.invokeMethod(kLab, "Measure").texts(),
              Texts{"17: Demo_Lab: method Measure: the provider does not have it"});
}

} // namespace
} // namespace adapter_test
