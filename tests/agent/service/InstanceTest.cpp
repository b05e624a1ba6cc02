// Reading and writing instances: every type there and back, fan-out, selection of properties.
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;
using test::TestCore;

using Names = std::vector<std::string>;

CimValue dateTime(const char* text)
{
    return CimValue::dateTime(CimDateTime::parse(text).value());
}

template <class Make>
CimValue arrayOf(CimType type, Make make)
{
    return CimValue::array(type, {make(0), CimValue::null(type), make(1)});
}

Instance part(const char* label)
{
    Instance result("test_part");
    result.set("LABEL", CimValue::string(label));
    result.set("Of", CimValue::reference(named("Test_Widget", "w1")));
    return result;
}

// A value of every type, none of them a default.
Instance fullWidget(const char* name)
{
    Instance widget("test_widget");
    widget.set("NAME", CimValue::string(name));
    widget.set("B", CimValue::boolean(true));
    widget.set("C16", CimValue::char16(0x20AC));
    widget.set("U8", CimValue::uint8(UINT8_MAX));
    widget.set("U16", CimValue::uint16(UINT16_MAX));
    widget.set("U32", CimValue::uint32(UINT32_MAX));
    widget.set("U64", CimValue::uint64(UINT64_MAX));
    widget.set("S8", CimValue::sint8(INT8_MIN));
    widget.set("S16", CimValue::sint16(INT16_MIN));
    widget.set("S32", CimValue::sint32(INT32_MIN));
    widget.set("S64", CimValue::sint64(INT64_MIN));
    widget.set("R32", CimValue::real32(0.1F));
    widget.set("R64", CimValue::real64(-1e300));
    widget.set("Text", CimValue::string("\xE2\x82\xAC<&> "));
    widget.set("Time", dateTime("20240229235959.123456-300"));
    widget.set("Peer", CimValue::reference(named("Test_Gadget", "g1")));
    widget.set("Part", CimValue::embedded(CimType::Instance, part("inside")));
    widget.set("Texts", arrayOf(CimType::String, [](int i) { return CimValue::string(i ? "" : "a"); }));
    widget.set("Numbers",
               arrayOf(CimType::Uint16, [](int i) { return CimValue::uint16(i ? 1 : UINT16_MAX); }));
    widget.set("Reals", arrayOf(CimType::Real64, [](int i) { return CimValue::real64(0.5 * i); }));
    widget.set("Flags", arrayOf(CimType::Boolean, [](int i) { return CimValue::boolean(i != 0); }));
    widget.set("Times",
               arrayOf(CimType::DateTime, [](int) { return dateTime("00000001000000.000000:000"); }));
    widget.set("Parts",
               arrayOf(CimType::Instance,
                       [](int) { return CimValue::embedded(CimType::Instance, part("in an array")); }));
    return widget;
}

TEST(InstanceOperations, CarryEveryTypeThereAndBack)
{
    TestCore core;
    const Instance sent = fullWidget("full");
    const ObjectPath path = core.service().createInstance(core.context, {kNameSpace, sent});
    EXPECT_EQ(path.text(), "root/test:Test_Widget.Name=\"full\"");

    GetInstanceRequest request;
    request.nameSpace = "ROOT/Test";
    request.path = path;
    const Instance got = core.service().getInstance(core.context, request);
    EXPECT_EQ(got.path(), path);
    EXPECT_EQ(got.className().str(), "Test_Widget");
    for (const Property& property : sent.properties())
    {
        const CimValue* value = got.find(property.name);
        ASSERT_TRUE(value) << property.name.str();
        if (isEmbedded(property.value.type()))
            continue;
        EXPECT_EQ(*value, property.value) << property.name.str();
    }
    // Embedded instances come back complete: declared case, class order, NULL for what was not given.
    const Instance& inside = got.find("Part")->asInstance();
    ASSERT_EQ(inside.properties().size(), 3U);
    EXPECT_EQ(inside.className().str(), "Test_Part");
    EXPECT_EQ(inside.properties()[0].name.str(), "Label");
    EXPECT_EQ(inside.properties()[0].value, CimValue::string("inside"));
    EXPECT_EQ(inside.properties()[1].value, CimValue::null(CimType::String));
    EXPECT_EQ(inside.find("Of")->asReference().text(), "root/test:Test_Widget.Name=\"w1\"");
    EXPECT_TRUE(got.find("Parts")->elements()[1].isNull());
    EXPECT_EQ(*got.find("Parts")->elements()[2].asInstance().find("Label"), CimValue::string("in an array"));
    // Properties nobody set are there, NULL and of their type.
    EXPECT_EQ(got.properties()[1].name.str(), "Note");
    EXPECT_EQ(got.properties()[1].value, CimValue::null(CimType::String));
    EXPECT_EQ(got.properties().size(), core.repository().find("Test_Widget")->properties().size());
}

TEST(InstanceOperations, FanOutInOrderOfRegistration)
{
    TestCore core;
    EXPECT_EQ(core.names("TEST_BASE"),
              (Names{"Test_Sprocket:s1", "Test_Widget:w1", "Test_Widget:w2", "Test_Gadget:g1"}));
    EXPECT_EQ(core.names("Test_Widget"), (Names{"Test_Widget:w1", "Test_Widget:w2", "Test_Gadget:g1"}));
    EXPECT_EQ(core.names("Test_Gadget"), (Names{"Test_Gadget:g1"}));

    // The sprocket alone is served in the other namespace, and its path says so.
    Collector<ObjectPath> paths;
    core.service().enumerateInstanceNames(core.context, {"root/other", "Test_Base"}, paths);
    ASSERT_EQ(paths.items.size(), 1U);
    EXPECT_EQ(test::outcome(
                  [&] {
                      core.service().enumerateInstanceNames(core.context, {"root/other", "Test_Link"}, paths);
                  }),
              "7 EnumerateInstanceNames: no provider serves class Test_Link or a subclass of it");
}

TEST(InstanceOperations, ReturnTheSameInstanceEnumeratedAndFetched)
{
    TestCore core;
    EnumerateInstancesRequest request;
    request.nameSpace = kNameSpace;
    request.className = "Test_Base";
    Collector<Instance> found;
    core.service().enumerateInstances(core.context, request, found);
    ASSERT_EQ(found.items.size(), 4U);
    for (const Instance& instance : found.items)
    {
        GetInstanceRequest get;
        get.nameSpace = kNameSpace;
        get.path = instance.path();
        const Instance fetched = core.service().getInstance(core.context, get);
        EXPECT_EQ(fetched, instance);
        EXPECT_EQ(fetched.path().text(), instance.path().text());
    }
}

std::string propertyNames(const Instance& instance)
{
    std::string text;
    for (const Property& property : instance.properties())
        text += (text.empty() ? "" : " ") + property.name.str();
    return text;
}

TEST(InstanceOperations, ReturnThePropertiesThatWereAskedFor)
{
    TestCore core;
    EnumerateInstancesRequest request;
    request.nameSpace = kNameSpace;
    request.className = "Test_Base";
    const auto first = [&]
    {
        Collector<Instance> found;
        core.service().enumerateInstances(core.context, request, found);
        return found.items.at(0); // a sprocket
    };
    EXPECT_EQ(propertyNames(first()), "Name Note Teeth");
    request.localOnly = true; // never hides anything
    EXPECT_EQ(propertyNames(first()), "Name Note Teeth");
    request.deepInheritance = false;
    EXPECT_EQ(propertyNames(first()), "Name Note");
    request.properties = {"teeth", "NOTE", "Unknown"};
    EXPECT_EQ(propertyNames(first()), "Note");
    request.deepInheritance = true;
    EXPECT_EQ(propertyNames(first()), "Note Teeth");
    EXPECT_TRUE(first().properties()[0].classOrigin.empty());
    request.includeClassOrigin = true;
    EXPECT_EQ(first().properties()[0].classOrigin.str(), "Test_Base");
    EXPECT_EQ(first().properties()[1].classOrigin.str(), "Test_Sprocket");
    EXPECT_EQ(first().properties()[0].value, CimValue::string("seeded"));
    EXPECT_EQ(first().path().text(), "root/test:Test_Sprocket.Name=\"s1\"");
    request.properties = std::vector<CimName>();
    EXPECT_EQ(propertyNames(first()), "");
}

TEST(InstanceOperations, ModifyAndDelete)
{
    TestCore core;
    const auto get = [&]
    {
        GetInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.path = named("TEST_SPROCKET", "s1", "NAME");
        return core.service().getInstance(core.context, request);
    };
    ModifyInstanceRequest change;
    change.nameSpace = kNameSpace;
    change.instance = Instance("Test_Sprocket");
    change.instance.setPath(named("test_sprocket", "s1", "name"));
    change.instance.set("teeth", CimValue::uint32(12));
    change.instance.set("note", CimValue::string("changed"));
    change.properties = {"TEETH"};
    core.service().modifyInstance(core.context, change);
    EXPECT_EQ(*get().find("Teeth"), CimValue::uint32(12));
    EXPECT_EQ(*get().find("Note"), CimValue::string("seeded")); // not listed

    change.instance.set("note", CimValue());
    change.properties.reset();
    core.service().modifyInstance(core.context, change);
    EXPECT_EQ(*get().find("Note"), CimValue::null(CimType::String));

    core.service().deleteInstance(core.context, {kNameSpace, named("Test_Sprocket", "s1")});
    EXPECT_EQ(test::outcome(get), "6 nothing stored as Test_Sprocket|Name=s1");
}

TEST(InstanceOperations, ReadKeysAsTheirDeclaredTypes)
{
    TestCore core;
    Instance compound("Test_Compound");
    compound.set("Id", CimValue::uint32(42));
    compound.set("When", dateTime("20240101000000.000000+000"));
    compound.set("Active", CimValue::boolean(true));
    const ObjectPath created = core.service().createInstance(core.context, {kNameSpace, compound});
    EXPECT_EQ(created.text(), "root/test:Test_Compound.Active=TRUE,Id=42,When=20240101000000.000000+000");

    // As a client sends them: integers without a size, date-times as strings, any order and case.
    GetInstanceRequest request;
    request.nameSpace = kNameSpace;
    request.path = ObjectPath("", "TEST_COMPOUND");
    request.path.setHost("client.example");
    request.path.setKey("WHEN", CimValue::string("20240101000000.000000+000"));
    request.path.setKey("id", CimValue::sint64(42));
    request.path.setKey("active", CimValue::boolean(true));
    const Instance got = core.service().getInstance(core.context, request);
    EXPECT_EQ(got.path().text(), created.text());
    EXPECT_EQ(*got.find("Id"), CimValue::uint32(42));
}

} // namespace
} // namespace cimd
