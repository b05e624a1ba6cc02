// What clients do wrong, the status they get, and that the message names it.
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

auto enumerate(const char* nameSpace, const char* className)
{
    return [=](TestCore& core)
    {
        Collector<ObjectPath> paths;
        core.service().enumerateInstanceNames(core.context, {nameSpace, className}, paths);
    };
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

auto modify(ObjectPath path,
            std::vector<Property> properties,
            PropertyList list = {},
            const char* className = "")
{
    return [=](TestCore& core)
    {
        ModifyInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.instance.setClassName(*className ? CimName(className) : path.className());
        request.instance.setPath(path);
        request.instance.properties() = properties;
        request.properties = list;
        core.service().modifyInstance(core.context, request);
    };
}

ObjectPath withKey(ObjectPath path, const char* name, CimValue value)
{
    path.setKey(name, std::move(value));
    return path;
}

TEST(Mistakes, InReadingInstances)
{
    expectAll({
        {"namespace", "3 namespace interop does not exist", enumerate("interop", "Test_Base")},
        {"namespace before class", "3 ", enumerate("interop", "Test_Nowhere")},
        {"class",
         "5 class Test_Nowhere does not exist in namespace root/test",
         enumerate("root/test", "Test_Nowhere")},
        {"class of a path", "5 class Test_Nowhere", get(named("Test_Nowhere", "w1"))},
        {"instance", "6 ", get(named("Test_Widget", "w9"))},
        {"unserved class",
         "7 EnumerateInstanceNames: no provider serves class Test_Unserved",
         enumerate("root/test", "Test_Unserved")},
        {"unserved exact class",
         "7 GetInstance: no provider serves class Test_Base",
         get(named("Test_Base", "w1"))},
        {"missing key",
         "4 class Test_Widget: key Name is missing",
         get(ObjectPath(kNameSpace, "Test_Widget"))},
        {"wrong key",
         "4 class Test_Widget: key Name is missing",
         get(named("Test_Widget", "w1", "Nickname"))},
        {"extra key",
         "4 class Test_Widget: Note is no key of the class",
         get(withKey(named("Test_Widget", "w1"), "Note", CimValue::string("x")))},
        {"type of a key",
         "4 class Test_Widget: key Name is no valid string",
         get(withKey(ObjectPath(kNameSpace, "Test_Widget"), "Name", CimValue::uint64(1)))},
    });
}

TEST(Mistakes, InWritingInstances)
{
    const auto number = CimValue::uint32(1);
    const auto text = CimValue::string("text");
    const ObjectPath s1 = named("Test_Sprocket", "s1");
    expectAll({
        {"class", "5 class Test_Nowhere", create("Test_Nowhere", {})},
        {"unserved class",
         "7 CreateInstance: no provider serves class Test_Unserved",
         create("Test_Unserved", {})},
        {"unknown property",
         "4 class Test_Sprocket has no property Tooth",
         create("Test_Sprocket", {{"Tooth", number, {}}})},
        {"type",
         "4 property Teeth of class Test_Sprocket is uint32 but was given as string",
         create("Test_Sprocket", {{"Teeth", text, {}}})},
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
        {"exists", "11 stored already", create("Test_Sprocket", {{"Name", CimValue::string("s1"), {}}})},
        {"unknown instance", "6 ", modify(named("Test_Sprocket", "s9"), {})},
        {"unknown property of a change",
         "4 class Test_Sprocket has no property Tooth",
         modify(s1, {{"Tooth", number, {}}})},
        {"unknown property in the list",
         "4 PropertyList: class Test_Sprocket has no property Tooth",
         modify(s1, {}, std::vector<CimName>{"Tooth"})},
        {"class and path",
         "4 the instance is of class Test_Widget but its path of class Test_Sprocket",
         modify(s1, {}, {}, "Test_Widget")},
        {"key changed",
         "4 key property Name differs from the path",
         modify(s1, {{"Name", CimValue::string("s2"), {}}})},
        {"delete unknown",
         "6 ",
         [](TestCore& core) {
             core.service().deleteInstance({}, {kNameSpace, named("Test_Widget", "w9")});
         }},
        {"delete refused",
         "7 DeleteInstance Test_Faulty: the provider answered CIM_ERR_NOT_SUPPORTED",
         [](TestCore& core) {
             core.service().deleteInstance({}, {kNameSpace, named("Test_Faulty", "good", "Mode")});
         }},
    });
}

TEST(Mistakes, InClassOperations)
{
    const auto getClass = [](const char* nameSpace, const char* className)
    {
        return [=](TestCore& core)
        {
            GetClassRequest request;
            request.nameSpace = nameSpace;
            request.className = className;
            core.service().getClass({}, request);
        };
    };
    expectAll({
        {"namespace", "3 ", getClass("root", "Test_Base")},
        {"class", "5 class Test_Nowhere", getClass("root/test", "Test_Nowhere")},
        {"start class",
         "5 class Test_Nowhere",
         [](TestCore& core)
         {
             Collector<CimName> names;
             core.service().enumerateClassNames({}, {kNameSpace, "Test_Nowhere", true}, names);
         }},
        {"qualifier",
         "6 qualifier Colour is not declared",
         [](TestCore& core) {
             core.service().getQualifier({}, {kNameSpace, "Colour"});
         }},
    });
}

TEST(ClassOperations, EnumerateFromTheRootsOrBelowAClass)
{
    TestCore core;
    const auto names = [&](const char* start, bool deep)
    {
        Collector<CimName> found;
        core.service().enumerateClassNames(core.context, {kNameSpace, start, deep}, found);
        std::string text;
        for (const CimName& name : found.items)
            text += name.str().substr(5) + " ";
        return text;
    };
    EXPECT_EQ(names("", false), "Base Part Faulty Wild Compound Link Ownership ");
    EXPECT_EQ(names("Test_Base", false), "Widget Sprocket Unserved ");
    EXPECT_EQ(names("test_base", true), "Widget Sprocket Unserved Gadget ");
    EXPECT_EQ(names("Test_Gadget", true), "");

    Collector<ClassDecl> classes;
    core.service().enumerateClasses(
        core.context, {kNameSpace, "Test_Widget", false, true, false, false}, classes);
    ASSERT_EQ(classes.items.size(), 1U);
    EXPECT_EQ(classes.items[0].superClass.str(), "Test_Widget");
    EXPECT_EQ(classes.items[0].properties.size(), 2U);

    Collector<QualifierDecl> qualifiers;
    core.service().enumerateQualifiers(core.context, kNameSpace, qualifiers);
    EXPECT_EQ(qualifiers.items.size(), core.repository().qualifiers().size());
    EXPECT_FALSE(core.service().getQualifier({}, {kNameSpace, "KEY"}).flavor.overridable);
}

} // namespace
} // namespace cimd
