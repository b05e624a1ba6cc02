// Values on their way from CMPI to the toolkit and back: every type, NULL, arrays, embedded instances, keys.
#include "adapter_fixture.h"

#include <adapter/from_cmpi_value.h>

namespace adapter_test
{
namespace
{

const char kThings[] = "root/demo:Demo_Everything";

class Conversion : public AdapterTest
{
  protected:
    // What a property looks like after a way through the provider; the failure if it did not get there.
    std::string roundTrip(const std::string& name, const std::string& value)
    {
        script<Demo_Everything>().reset();
        const Outcome created =
            things.createInstance(kThings, "Demo_Everything{Key=u64:1," + name + "=" + value + "}");
        const Outcome read =
            created.ok() ? things.getInstance(created.paths.at(0), {{name.c_str()}}) : created;
        if (!read.ok())
            return read.message;
        const std::string start = "Demo_Everything{Key=u64:1";
        return read.instances.at(0).substr(start.size());
    }

    Client& things = client(everythingProvider);
};

TEST_F(Conversion, EveryTypeSurvivesTheRoundTrip)
{
    const test_broker::Named cases[] = {
        {"TheBoolean", "true"},
        {"TheBoolean", "false"},
        {"TheUint8", "u8:255"},
        {"TheSint8", "s8:-128"},
        {"TheUint16", "u16:65535"},
        {"TheSint16", "s16:-32768"},
        {"TheUint32", "u32:4294967295"},
        {"TheSint32", "s32:-2147483648"},
        {"TheUint64", "u64:18446744073709551615"},
        {"TheSint64", "s64:-9223372036854775808"},
        {"TheReal32", "r32:1.5"},
        {"TheReal64", "r64:-1.0000000000000001e+300"},
        {"TheChar16", "c:9786"},
        {"TheString", "\"\""},
        {"TheString", "\"naïve \\\"text\\\"\\\\\""},
        {"TheDatetime", "d:20260314015926.535897+060"},
        {"TheDatetime", "d:00000012030405.000006:000"},
        {"TheBooleanArray", "[true,false]"},
        {"TheUint16Array", "[u16:1,u16:65535]"},
        {"TheUint16Array", "u16[]"},
        {"TheSint64Array", "[s64:-5]"},
        {"TheReal64Array", "[r64:0.10000000000000001]"},
        {"TheChar16Array", "[c:65,c:65535]"},
        {"TheStringArray", "[\"a\",\"\"]"},
        {"TheDatetimeArray", "[d:20260314015926.535897-300]"},
        {"Embedded", "Demo_Limits{Low=s32:-4}"},
        {"EmbeddedArray", "[Demo_Limits{Low=s32:1},instance:null,Demo_Limits{Low=s32:3}]"},
        {"Object", "Demo_Rack{Name=\"r1\"}"},
        {"ObjectArray", "[Demo_Limits{Low=s32:1},Demo_Rack{Name=\"r1\"}]"},
        {"TheUint32", "u32:null"},
        {"TheUint32", "null"}, // brokers differ in how much they know of a NULL
        {"TheString", "string:null"},
        {"TheDatetimeArray", "d[]:null"},
        {"Embedded", "instance:null"},
        {"EmbeddedArray", "instance[]:null"},
        {"DefaultUint32", "u32:null"}, // an explicit NULL is not the default
    };
    for (const bool fills : {true, false})
    {
        broker.schema = fills ? schemaOf : decltype(broker.schema)();
        for (const auto& [name, value] : cases)
            EXPECT_EQ(roundTrip(name, value),
                      test_broker::isNull(value) ? "}" : "," + name + "=" + value + "}");
    }
}

TEST_F(Conversion, ValuesThatDoNotFitAreRefusedByName)
{
    const struct
    {
        const char* name;
        const char* value;
        const char* text;
    } cases[] = {
        {"TheUint32", "u16:1", "uint16 given where uint32 is expected"},
        {"TheUint32", "s32:1", "sint32 given where uint32 is expected"},
        {"TheUint32", "[u16:1]", "uint16 array given where uint32 is expected"},
        {"TheUint16Array", "u16:1", "uint16 given where uint16 array is expected"},
        {"TheUint16Array", "[u32:1]", "uint32 array given where uint16 array is expected"},
        {"TheUint16Array", "[u16:1,u16:null]", "element 1 is NULL"},
        {"TheBoolean", "\"true\"", "string given where boolean is expected"},
        {"TheString", "true", "boolean given where string is expected"},
        {"TheDatetime",
         "d:2026031401****.******+060",
         "\"2026031401****.******+060\" is no datetime without wildcards"},
        {"Embedded", "Demo_Rack{Name=\"r1\"}", "class Demo_Rack is not a Demo_Limits"},
        {"Embedded",
         "<root/demo:Demo_Rack.Name=\"r1\">",
         "reference given where embedded instance is expected"},
        {"EmbeddedArray", "[Demo_Rack{Name=\"r1\"}]", "class Demo_Rack is not a Demo_Limits"},
        {"Object", "Demo_Unknown{}", "class Demo_Unknown is unknown here"},
        {"Embedded", "Demo_Limits{Middle=s32:1}", "class Demo_Limits has no property Middle"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(roundTrip(c.name, c.value),
                  std::string("Demo_Everything: create instance: ") + c.name + ": " + c.text);
    // A broker may repeat a property in another letter case; what is overwritten goes.
    things.createInstance(kThings,
                          "Demo_Everything{Key=u64:2,Embedded=Demo_Limits{Low=s32:1},EMBEDDED=Demo_Limits{},"
                          "EmbeddedArray=[Demo_Limits{Low=s32:1}],EMBEDDEDARRAY=[Demo_Limits{}]}");
    EXPECT_EQ(
        things.getInstance("root/demo:Demo_Everything.Key=u64:2", {{"Embedded", "EmbeddedArray"}}).texts(),
        Texts{"Demo_Everything{Key=u64:2,Embedded=Demo_Limits{},EmbeddedArray=[Demo_Limits{}]}"});
}

TEST_F(Conversion, ReferencesCarryKeysAndTheNamespaceOfTheirOwn)
{
    Client& links = client(sensorInRackProvider);
    const auto create = [&](const std::string& rack, const std::string& sensor)
    {
        return links
            .createInstance("root/demo:Demo_SensorInRack",
                            "Demo_SensorInRack{Rack=" + rack + ",Sensor=<" + sensor + ">}")
            .texts();
    };
    EXPECT_EQ(create("<root/demo:Demo_Rack.Name=\"r1\">", "root/elsewhere:Demo_Sensor.Id=u32:7"),
              Texts{"root/demo:Demo_SensorInRack.Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/elsewhere:Demo_Sensor.Id=u32:7>"});
    const std::pair<const char*, const char*> cases[] = {
        {"<root/demo:Demo_Sensor.Id=u32:7>", "class Demo_Sensor is not a Demo_Rack"},
        {"<root/demo:Demo_Rack>", "key Name is missing"},
        {"<root/demo:Demo_Unknown>", "class Demo_Unknown is unknown here"},
        {"\"Demo_Rack.Name=r1\"", "string given where reference is expected"},
    };
    for (const auto& [rack, text] : cases)
        EXPECT_EQ(create(rack, sensorPath(7)),
                  Texts{std::string("4: Demo_SensorInRack: create instance: Rack: ") + text});
}

// Integers of any CMPI type as a key of type T: the value, or the complaint.
template <class T>
std::string asKey(const std::string& value)
{
    const CMPIType type = test_broker::typeOf(value);
    try
    {
        return std::to_string(
            cimple_cmpi::keyFrom<T>({type, CMPI_goodValue, test_broker::scalarOf(value, type)}));
    }
    catch (const cimple_cmpi::Failure& failure)
    {
        return failure.what();
    }
}

TEST(KeyConversion, IntegersOfAnyWidthAreTakenIfTheyFit)
{
    const struct
    {
        std::string (*convert)(const std::string&);
        const char* value;
        const char* expected;
    } cases[] = {
        {asKey<uint8>, "u64:256", "256 does not fit uint8"},
        {asKey<uint8>, "s64:-1", "-1 does not fit uint8"},
        {asKey<sint8>, "s64:-128", "-128"},
        {asKey<sint8>, "s64:-129", "-129 does not fit sint8"},
        {asKey<uint64>, "s64:-1", "-1 does not fit uint64"},
        {asKey<sint64>, "u64:9223372036854775807", "9223372036854775807"},
        {asKey<sint64>, "u64:9223372036854775808", "9223372036854775808 does not fit sint64"},
        {asKey<sint64>, "s64:-9223372036854775808", "-9223372036854775808"},
        {asKey<sint64>, "s32:-1", "-1"},
        {asKey<sint64>, "r64:1", "real64 given where sint64 is expected"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.convert(c.value), c.expected) << c.value;
}

} // namespace
} // namespace adapter_test
