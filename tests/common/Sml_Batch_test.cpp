// Tests of how batch keys are made from formats.
#include "common/Sml_Batch.h"

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

TEST(FormatSmlKey, ReplacesConversionsByArguments)
{
    struct Row
    {
        const char* format;
        std::initializer_list<const char*> arguments;
        const char* key; // null: refused
    };
    const Row rows[] = {
        {"Oper.Switch.WWN", {}, "Oper.Switch.WWN"},
        {"Oper.Switch.WWN", {"7"}, "Oper.Switch.WWN"},
        {"Oper.UserPort.0.%s.WWN", {"7"}, "Oper.UserPort.0.7.WWN"},
        {"Oper.TopologyAll.%d.Entry.%d.PortWwn", {"26", "3"}, "Oper.TopologyAll.26.Entry.3.PortWwn"},
        {"Oper.Switch.Echo.%2$s", {"26", "010500"}, "Oper.Switch.Echo.010500"},
        {"%2$s.%1$s.%s", {"a", "b"}, "b.a.a"},
        {"Oper.UserPort.0.%s.WWN", {}, nullptr},
        {"Oper.Switch.Echo.%2$s", {"26"}, nullptr},
        {"%s.%s", {"a"}, nullptr},
        {"100%", {}, nullptr},
    };
    for (const Row& row : rows)
    {
        char key[kXplSmlTextSize];
        const bool made = formatSmlKey(key, row.format, row.arguments);
        EXPECT_EQ(made, row.key != nullptr) << row.format;
        if (made && row.key != nullptr)
        {
            EXPECT_STREQ(key, row.key);
        }
    }
}

TEST(FormatSmlKey, RefusesWhatDoesNotFitTheField)
{
    char key[kXplSmlTextSize];
    EXPECT_TRUE(formatSmlKey(key, "%s", {std::string(255, 'k').c_str()}));
    EXPECT_FALSE(formatSmlKey(key, "%s", {std::string(256, 'k').c_str()}));
    EXPECT_FALSE(formatSmlKey(key, "%s.", {std::string(255, 'k').c_str()}));
}

} // namespace
} // namespace cimple
