// Values on their way from CMPI to the toolkit and back: every type, NULL, arrays, embedded instances, keys.
#include "adapter_fixture.h"

#include <adapter/FromCmpiValue.h>

namespace adapter_test
{
namespace
{

Inst everything(std::vector<Named> properties)
{
    properties.insert(properties.begin(), {"Key", Value::integer(CMPI_uint64, 1)});
    return {classPath("Demo_Everything"), properties};
}

const Path kEverythingPath = {"root/demo", "Demo_Everything", {{"Key", Value::integer(CMPI_uint64, 1)}}};

Value u16s(std::vector<unsigned> numbers)
{
    std::vector<Value> elements;
    for (unsigned n : numbers)
        elements.push_back(Value::integer(CMPI_uint16, n));
    return Value::array(CMPI_uint16, elements);
}

class Conversion : public AdapterTest
{
  protected:
    // What a property looks like after a way through the provider; the failure if it did not get there.
    std::string roundTrip(Client& things, const char* name, const Value& value)
    {
        script<Demo_Everything>().reset();
        const Outcome created =
            things.createInstance(classPath("Demo_Everything"), everything({{name, value}}));
        const Outcome read = created.ok() ? things.getInstance(kEverythingPath, {{name}}) : Outcome(created);
        if (!read.ok())
            return read.message;
        const Value* property = read.instances.at(0).property(name);
        return property ? test_broker::textOf(*property) : "null";
    }
};

TEST_F(Conversion, EveryTypeSurvivesTheRoundTrip)
{
    const struct
    {
        const char* name;
        Value value;
    } cases[] = {
        {"TheBoolean", Value::boolean(true)},
        {"TheBoolean", Value::boolean(false)},
        {"TheUint8", Value::integer(CMPI_uint8, 255)},
        {"TheSint8", Value::integer(CMPI_sint8, CMPIUint64(-128))},
        {"TheUint16", Value::integer(CMPI_uint16, 65535)},
        {"TheSint16", Value::integer(CMPI_sint16, CMPIUint64(-32768))},
        {"TheUint32", Value::integer(CMPI_uint32, 4294967295u)},
        {"TheSint32", Value::integer(CMPI_sint32, CMPIUint64(INT32_MIN))},
        {"TheUint64", Value::integer(CMPI_uint64, ~0ull)},
        {"TheSint64", Value::integer(CMPI_sint64, 1ull << 63)},
        {"TheReal32", Value::real32(1.5F)},
        {"TheReal64", Value::real64(-1e300)},
        {"TheChar16", Value::char16(0x263A)},
        {"TheString", Value::string("")},
        {"TheString", Value::string("naïve \"text\"\\")},
        {"TheDatetime", Value::dateTime("20260314015926.535897+060")},
        {"TheDatetime", Value::dateTime("00000012030405.000006:000")},
        {"TheBooleanArray", Value::array(CMPI_boolean, {Value::boolean(true), Value::boolean(false)})},
        {"TheUint16Array", u16s({1, 65535})},
        {"TheUint16Array", u16s({})},
        {"TheSint64Array", Value::array(CMPI_sint64, {Value::integer(CMPI_sint64, CMPIUint64(-5))})},
        {"TheReal64Array", Value::array(CMPI_real64, {Value::real64(0.1)})},
        {"TheChar16Array", Value::array(CMPI_char16, {Value::char16(65), Value::char16(0xFFFF)})},
        {"TheStringArray", Value::array(CMPI_string, {Value::string("a"), Value::string("")})},
        {"TheDatetimeArray", Value::array(CMPI_dateTime, {Value::dateTime("20260314015926.535897-300")})},
        {"Embedded", limits(-4)},
        {"EmbeddedArray", Value::array(CMPI_instance, {limits(1), limits(2)})},
        {"EmbeddedArray", Value::array(CMPI_instance, {limits(1), Value::nullOf(CMPI_instance), limits(3)})},
        {"Object", Value::instance({classPath("Demo_Rack"), {{"Name", Value::string("r1")}}})},
        {"ObjectArray",
         Value::array(
             CMPI_instance,
             {limits(1), Value::instance({classPath("Demo_Rack"), {{"Name", Value::string("r1")}}})})},
        {"TheUint32", Value::nullOf(CMPI_uint32)},
        {"TheUint32", Value::nullOf(CMPI_null)}, // brokers differ in how much they know of a NULL
        {"TheString", Value::nullOf(CMPI_string)},
        {"TheDatetimeArray", Value::nullOf(CMPI_dateTimeA)},
        {"Embedded", Value::nullOf(CMPI_instance)},
        {"EmbeddedArray", Value::nullOf(CMPI_instanceA)},
        {"DefaultUint32", Value::nullOf(CMPI_uint32)}, // an explicit NULL is not the default
    };
    Client& things = client(everythingProvider);
    for (const bool fills : {true, false})
    {
        broker.schema = fills ? schemaOf : decltype(broker.schema)();
        for (const auto& c : cases)
            EXPECT_EQ(roundTrip(things, c.name, c.value), test_broker::textOf(c.value)) << c.name;
    }
}

TEST_F(Conversion, ValuesThatDoNotFitAreRefusedByName)
{
    const Value rackInstance = Value::instance({classPath("Demo_Rack"), {{"Name", Value::string("r1")}}});
    const struct
    {
        const char* name;
        Value value;
        const char* text;
    } cases[] = {
        {"TheUint32", Value::integer(CMPI_uint16, 1), "uint16 given where uint32 is expected"},
        {"TheUint32", Value::integer(CMPI_sint32, 1), "sint32 given where uint32 is expected"},
        {"TheUint32", u16s({1}), "uint16 array given where uint32 is expected"},
        {"TheUint16Array", Value::integer(CMPI_uint16, 1), "uint16 given where uint16 array is expected"},
        {"TheUint16Array",
         Value::array(CMPI_uint32, {Value::integer(CMPI_uint32, 1)}),
         "uint32 array given where uint16 array is expected"},
        {"TheUint16Array",
         Value::array(CMPI_uint16, {Value::integer(CMPI_uint16, 1), Value::nullOf(CMPI_uint16)}),
         "element 1 is NULL"},
        {"TheBoolean", Value::string("true"), "string given where boolean is expected"},
        {"TheString", Value::boolean(true), "boolean given where string is expected"},
        {"TheDatetime",
         Value::dateTime("2026031401****.******+060"),
         "\"2026031401****.******+060\" is no datetime without wildcards"},
        {"Embedded", rackInstance, "class Demo_Rack is not a Demo_Limits"},
        {"Embedded", Value::ref(rackPath("r1")), "reference given where embedded instance is expected"},
        {"EmbeddedArray",
         Value::array(CMPI_instance, {rackInstance}),
         "class Demo_Rack is not a Demo_Limits"},
        {"Object", Value::instance({classPath("Demo_Unknown"), {}}), "class Demo_Unknown is unknown here"},
        {"Embedded",
         Value::instance({classPath("Demo_Limits"), {{"Middle", Value::integer(CMPI_sint32, 1)}}}),
         "class Demo_Limits has no property Middle"},
    };
    Client& things = client(everythingProvider);
    for (const auto& c : cases)
        EXPECT_EQ(roundTrip(things, c.name, c.value),
                  std::string("Demo_Everything: create instance: ") + c.name + ": " + c.text);
}

TEST_F(Conversion, ReferencesCarryKeysAndTheNamespaceOfTheirOwn)
{
    Client& links = client(sensorInRackProvider);
    Path elsewhere = sensorPath(7);
    elsewhere.ns = "root/elsewhere";
    const Inst link = {classPath("Demo_SensorInRack"),
                       {{"Rack", Value::ref(rackPath("r1"))}, {"Sensor", Value::ref(elsewhere)}}};
    EXPECT_EQ(links.createInstance(classPath("Demo_SensorInRack"), link).texts(),
              Texts{"root/demo:Demo_SensorInRack.Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/elsewhere:Demo_Sensor.Id=u32:7>"});

    const struct
    {
        Value rack;
        const char* text;
    } cases[] = {
        {Value::ref(sensorPath(7)), "Rack: class Demo_Sensor is not a Demo_Rack"},
        {Value::ref(classPath("Demo_Rack")), "Rack: key Name is missing"},
        {Value::ref({"root/demo", "Demo_Unknown", {}}), "Rack: class Demo_Unknown is unknown here"},
        {Value::string("Demo_Rack.Name=\"r1\""), "Rack: string given where reference is expected"},
    };
    for (const auto& c : cases)
    {
        const Inst wrong = {link.path, {{"Rack", c.rack}, {"Sensor", Value::ref(sensorPath(7))}}};
        EXPECT_EQ(links.createInstance(link.path, wrong).message,
                  std::string("Demo_SensorInRack: create instance: ") + c.text);
    }
}

TEST_F(Conversion, OverwrittenReferencesDoNotLeak)
{
    // The same embedded instance set twice, as by a broker that repeats a property in another letter case.
    Inst inst = everything({});
    inst.properties.emplace_back("Embedded", limits(1));
    inst.properties.emplace_back("EMBEDDED", limits(2));
    inst.properties.emplace_back("EmbeddedArray", Value::array(CMPI_instance, {limits(1)}));
    inst.properties.emplace_back("EMBEDDEDARRAY", Value::array(CMPI_instance, {limits(2)}));
    Client& things = client(everythingProvider);
    EXPECT_TRUE(things.createInstance(classPath("Demo_Everything"), inst).ok());
    EXPECT_EQ(things.getInstance(kEverythingPath, {{"Embedded", "EmbeddedArray"}}).texts(),
              Texts{"Demo_Everything{Key=u64:1,Embedded=Demo_Limits{Low=s32:2},"
                    "EmbeddedArray=[Demo_Limits{Low=s32:2}]}"});
}

// Integers of any CMPI type as a key of type T: the value, or the complaint.
template <class T>
std::string asKey(CMPIType type, CMPIUint64 bits)
{
    const CMPIData data = {type, CMPI_goodValue, Value::integer(type, bits).scalar};
    try
    {
        return std::to_string(cimple_cmpi::keyFrom<T>(data));
    }
    catch (const cimple_cmpi::Failure& failure)
    {
        return failure.what();
    }
}

TEST(KeyConversion, IntegersOfAnyWidthAreTakenIfTheyFit)
{
    const CMPIUint64 minusOne = ~0ull;
    const struct
    {
        std::string (*convert)(CMPIType, CMPIUint64);
        CMPIType type;
        CMPIUint64 bits;
        const char* expected;
    } cases[] = {
        {asKey<uint8>, CMPI_uint64, 256, "256 does not fit uint8"},
        {asKey<uint8>, CMPI_sint64, minusOne, "-1 does not fit uint8"},
        {asKey<sint8>, CMPI_sint64, CMPIUint64(-128), "-128"},
        {asKey<sint8>, CMPI_sint64, CMPIUint64(-129), "-129 does not fit sint8"},
        {asKey<uint64>, CMPI_sint64, minusOne, "-1 does not fit uint64"},
        {asKey<sint64>, CMPI_uint64, (1ull << 63) - 1, "9223372036854775807"},
        {asKey<sint64>, CMPI_uint64, 1ull << 63, "9223372036854775808 does not fit sint64"},
        {asKey<sint64>, CMPI_sint64, 1ull << 63, "-9223372036854775808"},
        {asKey<sint64>, CMPI_sint32, minusOne, "-1"},
        {asKey<sint64>, CMPI_real64, 1, "real64 given where sint64 is expected"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.convert(c.type, c.bits), c.expected) << "type " << c.type << " bits " << c.bits;
}

} // namespace
} // namespace adapter_test
