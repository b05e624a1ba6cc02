// What clients do wrong, the status they get, and that the message names it. More, as messages, is in
// tests/wire.
#include "tests/agent/testproviders/TestCore.h"

#include <functional>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;
using test::outcome;
using test::TestCore;

struct Row
{
    const char* name;
    const char* expected; // start of "code message"
    std::function<void(TestCore&)> action;
};

void expectAll(const std::vector<Row>& rows)
{
    TestCore core;
    for (const Row& row : rows)
    {
        const std::string got = outcome([&] { row.action(core); });
        EXPECT_EQ(got.rfind(row.expected, 0), 0U)
            << row.name << ": " << got << "\nexpected: " << row.expected;
    }
}

auto get(ObjectPath path)
{
    return [=](TestCore& core)
    {
        GetInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.path = path;
        core.service().getInstance(core.context, request);
    };
}

auto create(const char* className, std::vector<Property> properties)
{
    return [=](TestCore& core)
    {
        Instance instance(className);
        instance.properties() = properties;
        core.service().createInstance(core.context, {kNameSpace, instance});
    };
}

auto modify(ObjectPath path, std::vector<Property> properties, const char* className)
{
    return [=](TestCore& core)
    {
        ModifyInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.instance.setClassName(className);
        request.instance.setPath(path);
        request.instance.properties() = properties;
        core.service().modifyInstance(core.context, request);
    };
}

auto remove(ObjectPath path)
{
    return [=](TestCore& core) { core.service().deleteInstance({}, {kNameSpace, path}); };
}

auto setProperty(ObjectPath path, const char* property, CimValue value, bool typed)
{
    return [=](TestCore& core) {
        core.service().setProperty(core.context, {kNameSpace, path, {property, value, typed}});
    };
}

auto invoke(ObjectPath path, const char* method, std::vector<Argument> arguments = {})
{
    return [=](TestCore& core) {
        core.service().invokeMethod(core.context, {kNameSpace, path, method, arguments});
    };
}

TEST(Mistakes, InInstances)
{
    const auto number = CimValue::uint32(1);
    const ObjectPath s1 = named("Test_Sprocket", "s1");
    ObjectPath numbered(kNameSpace, "Test_Widget");
    numbered.setKey("Name", CimValue::uint64(1));
    Instance toothed("Test_Part");
    toothed.set("Tooth", number);
    expectAll({
        {"class served by nobody",
         "7 GetInstance: no provider serves class Test_Base",
         get(named("Test_Base", "w1"))},
        {"type of a key", "4 class Test_Widget: key Name is no valid string", get(numbered)},
        {"array for scalar",
         "4 property Teeth of class Test_Sprocket is uint32 but was given as uint32[]",
         create("Test_Sprocket", {{"Teeth", CimValue::array(CimType::Uint32, {number}), {}}})},
        {"repeated",
         "4 property Teeth of class Test_Sprocket is given twice",
         create("Test_Sprocket", {{"Teeth", number, {}}, {"TEETH", number, {}}})},
        {"class of a reference",
         "4 property Peer of class Test_Widget: a reference to Test_Faulty stands where Test_Base",
         create("Test_Widget", {{"Peer", CimValue::reference(named("Test_Faulty", "x", "Mode")), {}}})},
        {"keys of a reference",
         "4 property Peer of class Test_Widget: class Test_Widget: key Name is missing",
         create("Test_Widget", {{"Peer", CimValue::reference(ObjectPath("", "Test_Widget")), {}}})},
        {"embedded class",
         "4 property Part of class Test_Widget is an instance of Test_Sprocket, not of Test_Part",
         create("Test_Widget",
                {{"Part", CimValue::embedded(CimType::Instance, Instance("Test_Sprocket")), {}}})},
        {"unknown embedded class",
         "4 property Part of class Test_Widget: class Test_Nowhere does not exist",
         create("Test_Widget",
                {{"Part", CimValue::embedded(CimType::Instance, Instance("Test_Nowhere")), {}}})},
        {"property of an embedded instance",
         "4 class Test_Part has no property Tooth",
         create("Test_Widget", {{"Part", CimValue::embedded(CimType::Instance, toothed), {}}})},
        {"no path from the provider",
         "1 CreateInstance Test_Faulty: the provider returned no path",
         create("Test_Faulty", {})},
        {"class and path",
         "4 the instance is of class Test_Widget but its path of class Test_Sprocket",
         modify(s1, {}, "Test_Widget")},
        {"key changed",
         "4 key property Name differs from the path",
         modify(s1, {{"Name", CimValue::string("s2"), {}}}, "Test_Sprocket")},
        {"delete refused",
         "7 DeleteInstance Test_Faulty: the provider answered CIM_ERR_NOT_SUPPORTED",
         remove(named("Test_Faulty", "good", "Mode"))},
        {"key set",
         "4 property Name of class Test_Sprocket is a key",
         setProperty(s1, "Name", CimValue::string("s2"), false)},
        {"type of a set property",
         "13 property Teeth is uint32 but was given as",
         setProperty(s1, "Teeth", CimValue::reference(s1), true)},
        {"qualifier",
         "6 qualifier Colour is not declared",
         [](TestCore& core) {
             core.service().getQualifier({}, {kNameSpace, "Colour"});
         }},
    });
}

TEST(Mistakes, InMethods)
{
    const ObjectPath w1 = named("Test_Widget", "w1");
    const Argument text{"text", CimValue::string("hello")};
    const auto misbehave = [&](const char* how) {
        return invoke(w1, "Misbehave", {{"How", CimValue::string(how)}});
    };
    expectAll({
        {"served by nobody",
         "7 InvokeMethod Reset: no provider serves class Test_Base",
         invoke(named("Test_Base", "x"), "Reset")},
        {"untyped",
         "4 parameter Number of method Echo is no valid sint64",
         invoke(w1, "Echo", {text, {"Number", CimValue::string("seven"), false}})},
        {"output",
         "4 parameter Count of method Echo is an output parameter",
         invoke(w1, "Echo", {text, {"Count", CimValue::uint32(1)}})},
        {"reference",
         "4 parameter Peer of method Echo: a reference to Test_Sprocket stands where Test_Widget is declared",
         invoke(w1, "Echo", {text, {"Peer", CimValue::reference(named("Test_Sprocket", "s1"))}})},
        {"unavailable",
         "16 InvokeMethod Misbehave Test_Widget: the provider answered",
         misbehave("unavailable")},
        {"unknown out",
         "1 method Misbehave: the provider set Surprise, which is no output parameter",
         misbehave("unknown out")},
        {"out type",
         "1 method Misbehave: the provider set parameter Result as string but it is uint32",
         misbehave("out type")},
        {"return twice",
         "1 InvokeMethod Misbehave Test_Widget: the provider returned",
         misbehave("return twice")},
    });
}

} // namespace
} // namespace cimd
