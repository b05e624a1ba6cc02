// Reading and writing single properties.
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

class PropertyOperations : public ::testing::Test
{
  protected:
    CimValue get(const ObjectPath& path, const char* property)
    {
        return _core.service().getProperty(_core.context, {kNameSpace, path, property});
    }

    void set(const ObjectPath& path, const char* property, CimValue value, bool typed = false)
    {
        _core.service().setProperty(_core.context, {kNameSpace, path, {property, std::move(value), typed}});
    }

    TestCore _core;
};

CimValue text(const char* value)
{
    return CimValue::string(value);
}

TEST_F(PropertyOperations, ReadWhatWasWritten)
{
    Instance widget("Test_Widget");
    widget.set("Name", text("p"));
    widget.set("U16", CimValue::uint16(5));
    const ObjectPath path = _core.service().createInstance(_core.context, {kNameSpace, widget});
    const CimValue peer = CimValue::reference(named("Test_Gadget", "g1"));
    const struct
    {
        const char* property;
        CimValue given;
        bool typed;
        CimValue expected;
    } rows[] = {
        {"u8", text("0x1f"), false, CimValue::uint8(31)},
        {"Text", text(""), false, text("")},
        {"B", text("TRUE"), false, CimValue::boolean(true)},
        {"NUMBERS",
         CimValue::array(CimType::String, {text("1"), CimValue::null(CimType::String)}),
         false,
         CimValue::array(CimType::Uint16, {CimValue::uint16(1), CimValue::null(CimType::Uint16)})},
        {"Peer", peer, true, peer},
        {"U8", CimValue::null(CimType::String), false, CimValue::null(CimType::Uint8)},
        {"Texts", CimValue::null(CimType::String), false, CimValue::null(CimType::String, true)},
    };
    for (const auto& row : rows)
    {
        set(path, row.property, row.given, row.typed);
        EXPECT_EQ(row.expected, get(path, row.property)) << row.property;
    }
    EXPECT_EQ(CimValue::uint16(5), get(path, "U16")) << "another property was changed";
    EXPECT_EQ(text("p"), get(path, "name"));
}

TEST_F(PropertyOperations, MistakesHaveTheirStatus)
{
    const ObjectPath s1 = named("Test_Sprocket", "s1");
    const ObjectPath absent = named("Test_Sprocket", "s99");
    const ObjectPath stranger = named("Test_Nowhere", "x");
    const struct
    {
        ObjectPath path;
        const char* property;
        CimValue value;
        bool typed;
        const char* expectedOfGet;
        const char* expectedOfSet;
    } rows[] = {
        {stranger, "Teeth", text("1"), false, "5 class Test_Nowhere", "5 class Test_Nowhere"},
        {s1, "Tooth", text("1"), false, "12 class Test_Sprocket has no property Tooth", "12 class Test_Spr"},
        {absent, "Teeth", text("1"), false, "6 ", "6 "},
        {ObjectPath(kNameSpace, "Test_Sprocket"), "Teeth", text("1"), false, "4 class", "4 class"},
        {named("Test_Unserved", "x"), "Note", text("1"), false, "7 GetInst", "7 ModifyInst"},
        {s1, "Name", text("s2"), false, "OK", "4 property Name of class Test_Sprocket is a key"},
        {s1, "Teeth", text("many"), false, "OK", "13 property Teeth: the value is no valid uint32"},
        {s1, "Teeth", CimValue::array(CimType::String, {text("1")}), false, "OK", "13 property Teeth"},
        {s1, "Teeth", CimValue::reference(s1), true, "OK", "13 property Teeth is uint32 but was given as"},
    };
    for (const auto& row : rows)
    {
        const std::string got = outcome([&] { get(row.path, row.property); });
        EXPECT_EQ(0U, got.rfind(row.expectedOfGet, 0)) << got;
        const std::string done = outcome([&] { set(row.path, row.property, row.value, row.typed); });
        EXPECT_EQ(0U, done.rfind(row.expectedOfSet, 0)) << done;
    }
}

} // namespace
} // namespace cimd
