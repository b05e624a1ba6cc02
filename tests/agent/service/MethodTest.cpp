// Extrinsic methods: arguments in, arguments out, return values, and every way to get them wrong.
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;
using test::outcome;
using test::TestCore;

const ObjectPath kWidget = named("Test_Widget", "w1");

InvokeMethodRequest request(ObjectPath path, const char* method, std::vector<Argument> arguments = {})
{
    return {kNameSpace, std::move(path), method, std::move(arguments)};
}

const Argument kText{"text", CimValue::string("hello")};

TEST(Methods, CarryArgumentsThereAndBack)
{
    TestCore core;
    Instance part("Test_Part");
    part.set("Label", CimValue::string("given"));
    const auto strings = CimValue::array(CimType::String, {CimValue::string("1"), CimValue::string("255")});
    const MethodResult result = core.service().invokeMethod(
        core.context,
        request(kWidget,
                "echo",
                {{"PEER", CimValue::reference(named("test_gadget", "g1", "name"))},
                 {"Number", CimValue::string("-7"), false},
                 {"Numbers", strings, false},
                 {"Part", CimValue::embedded(CimType::Instance, part)},
                 kText}));
    EXPECT_EQ(result.returnValue, CimValue::uint32(0));
    // In order of declaration, in declared letter case and types.
    ASSERT_EQ(result.out.size(), 6U);
    EXPECT_EQ(result.out[0].name.str(), "Text");
    EXPECT_EQ(result.out[0].value, CimValue::string("hello"));
    EXPECT_EQ(result.out[1].value, CimValue::sint64(-7));
    EXPECT_EQ(result.out[2].value,
              CimValue::array(CimType::Uint8, {CimValue::uint8(1), CimValue::uint8(255)}));
    EXPECT_EQ(result.out[3].value.asReference().text(), "root/test:Test_Gadget.Name=\"g1\"");
    EXPECT_EQ(*result.out[4].value.asInstance().find("Label"), CimValue::string("given"));
    EXPECT_EQ(result.out[5].name.str(), "Count");
    EXPECT_EQ(result.out[5].value, CimValue::uint32(5));

    const MethodResult few = core.service().invokeMethod(core.context, request(kWidget, "Echo", {kText}));
    EXPECT_EQ(few.out[1].value, CimValue::null(CimType::Sint64));
    EXPECT_EQ(few.out[2].value, CimValue::null(CimType::Uint8, true));
}

TEST(Methods, ReturnInstancesAndServeClasses)
{
    TestCore core;
    const auto made = core.service().invokeMethod(core.context, request(kWidget, "MakePart")).returnValue;
    EXPECT_EQ(*made.asInstance().find("Label"), CimValue::string("made"));
    EXPECT_FALSE(made.asInstance().hasPath());
    // A static method needs no instance and gets none.
    for (const ObjectPath& path : {ObjectPath(kNameSpace, "Test_Widget"), kWidget})
        EXPECT_EQ(core.service().invokeMethod(core.context, request(path, "Total")).returnValue,
                  CimValue::uint64(0));
}

TEST(Methods, RefuseWrongRequestsAndWrongAnswers)
{
    struct Row
    {
        const char* name;
        InvokeMethodRequest request;
        const char* expected; // start of "code message"
    };
    const auto misbehave = [](const char* how) {
        return request(kWidget, "Misbehave", {{"How", CimValue::string(how)}});
    };
    const Row rows[] = {
        {"method", request(kWidget, "Explode"), "17 class Test_Widget has no method Explode"},
        {"class", request(named("Test_Nowhere", "x"), "Echo"), "5 class Test_Nowhere"},
        {"no instance",
         request(ObjectPath("", "Test_Widget"), "Echo", {kText}),
         "4 class Test_Widget: key Name is missing"},
        {"unserved",
         request(named("Test_Base", "x"), "Reset"),
         "7 InvokeMethod Reset: no provider serves class Test_Base"},
        {"missing", request(kWidget, "Echo"), "4 parameter Text of method Echo is required"},
        {"unknown",
         request(kWidget, "Echo", {kText, {"Colour", CimValue::uint8(1)}}),
         "4 method Echo has no parameter Colour"},
        {"repeated",
         request(kWidget, "Echo", {kText, kText}),
         "4 parameter text of method Echo is given twice"},
        {"type",
         request(kWidget, "Echo", {{"Text", CimValue::uint8(1)}}),
         "4 parameter Text of method Echo is string but was given as uint8"},
        {"untyped",
         request(kWidget, "Echo", {kText, {"Number", CimValue::string("seven"), false}}),
         "4 parameter Number of method Echo is no valid sint64"},
        {"output",
         request(kWidget, "Echo", {kText, {"Count", CimValue::uint32(1)}}),
         "4 parameter Count of method Echo is an output parameter"},
        {"reference",
         request(kWidget, "Echo", {kText, {"Peer", CimValue::reference(named("Test_Sprocket", "s1"))}}),
         "4 parameter Peer of method Echo: a reference to Test_Sprocket stands where Test_Widget is "
         "declared"},
        {"not implemented", request(kWidget, "Reset"), "16 not implemented"},
        {"unavailable",
         misbehave("unavailable"),
         "16 InvokeMethod Misbehave Test_Widget: the provider answered"},
        {"unknown out",
         misbehave("unknown out"),
         "1 method Misbehave: the provider set Surprise, which is no output parameter"},
        {"out type",
         misbehave("out type"),
         "1 method Misbehave: the provider set parameter Result as string but it is uint32"},
        {"return type",
         misbehave("return type"),
         "1 InvokeMethod Misbehave Test_Widget: the provider returned a string where the method is declared"},
        {"return twice",
         misbehave("return twice"),
         "1 InvokeMethod Misbehave Test_Widget: the provider returned"},
        {"no value", misbehave("no value"), "OK"},
    };
    TestCore core;
    for (const Row& row : rows)
    {
        const std::string got = outcome([&] { core.service().invokeMethod(core.context, row.request); });
        EXPECT_EQ(got.rfind(row.expected, 0), 0U)
            << row.name << ": " << got << "\nexpected: " << row.expected;
    }
}

} // namespace
} // namespace cimd
