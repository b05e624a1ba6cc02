// Tests of how keys are made from formats, and values from attributes.
#include "support/substitute.h"
#include "switchaccess/Attribute.h"

#include <string>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

TEST(Substitute, ReplacesConversionsByArguments)
{
    struct Row
    {
        const char* format;
        std::initializer_list<const char*> arguments;
        const char* text; // null: refused
    };
    const Row rows[] = {
        {"Oper.Switch.WWN", {}, "Oper.Switch.WWN"},
        {"Oper.Switch.WWN", {"7"}, "Oper.Switch.WWN"},
        {"Oper.UserPort.0.%s.WWN", {"7"}, "Oper.UserPort.0.7.WWN"},
        {"Oper.TopologyAll.%d.Entry.%d.PortWwn", {"26", "3"}, "Oper.TopologyAll.26.Entry.3.PortWwn"},
        {"Oper.Switch.Echo.%2$s", {"26", "010500"}, "Oper.Switch.Echo.010500"},
        {"%2$s.%1$s.%s", {"a", "b"}, "b.a.a"},
        {"%.3s:%2$.16s:%.0s", {"abcd", "b"}, "abc:b:"},
        {"Oper.UserPort.0.%s.WWN", {}, nullptr},
        {"Oper.Switch.Echo.%2$s", {"26"}, nullptr},
        {"%s.%s", {"a"}, nullptr},
        {"%s", {nullptr}, nullptr},
        {"100%", {}, nullptr},
        {"%.", {}, nullptr},
    };
    for (const Row& row : rows)
    {
        char text[64];
        const bool made = substitute(text, sizeof(text), row.format, row.arguments);
        EXPECT_EQ(made, row.text != nullptr) << row.format;
        if (made && row.text != nullptr)
            EXPECT_STREQ(text, row.text);
    }
}

TEST(Substitute, RefusesWhatDoesNotFit)
{
    char text[6];
    EXPECT_TRUE(substitute(text, sizeof(text), "12%s", {"345"}));
    EXPECT_STREQ(text, "12345");
    EXPECT_FALSE(substitute(text, sizeof(text), "12%s", {"3456"}));
    EXPECT_STREQ(text, "12345") << "terminated where it ends";
    EXPECT_FALSE(substitute(text, sizeof(text), "%s.", {"12345"}));
}

TEST(AttributeConversions, TakeTheNumberAtTheStart)
{
    EXPECT_EQ(hexadecimal("ffFFffffffffffff x"), 0xffffffffffffffffU);
    EXPECT_EQ(decimal("18446744073709551615"), 0xffffffffffffffffU);
    EXPECT_EQ(decimal("010"), 10U);
    EXPECT_EQ(decimal16("010 of 16"), 10);
    EXPECT_EQ(decimal16("none"), 0);
    EXPECT_EQ(decimal32("4294967295 mW"), 0xffffffffU);
    EXPECT_EQ(decimal32("4294967296"), 0xffffffffU);
    EXPECT_TRUE(isTrue("True"));
    EXPECT_FALSE(isTrue("true"));
    EXPECT_EQ(asOnlyElement("x")[0], "x");
}

} // namespace
} // namespace cimple
