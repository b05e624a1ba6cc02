// Tests of batches: how keys are made from formats, and values that are substituted.
#include "common/Sml_Batch.h"

#include "simulator/testing/sim_switch.h"

#include <string>

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

constexpr const char* kTwoKeys[] = {"Oper.UserPort.0.%s.DiagStatus", "Oper.UserPort.0.%s.OperState"};

TEST(SmlBatch, AValueThatIsNotAvailableCanBeSubstitutedUntilTheNextRead)
{
    simulator::SimSwitch sim = simulator::SimSwitch::make();
    Sml_Batch batch(kTwoKeys);
    sim.failNext("Oper.UserPort.0.1.DiagStatus", 1, XPL_NOT_AVAILABLE);
    ASSERT_TRUE(batch.read({"1"}));
    EXPECT_EQ(batch.status(0), XPL_NOT_AVAILABLE);
    batch.substitute(0, "Unknown");
    EXPECT_EQ(batch.status(0), 0);
    EXPECT_STREQ(batch.text(0), "Unknown");
    EXPECT_STREQ(batch.text(1), "Online");
    EXPECT_TRUE(batch.read({"1"}));
    EXPECT_STREQ(batch.text(0), "Passed");

    // Errors are told until they are substituted.
    sim.failNext("Oper.UserPort.0.1.OperState");
    EXPECT_FALSE(batch.read({"1"}));
    EXPECT_TRUE(batch.hasErrors());
    batch.substitute(1, std::string(300, 'x').c_str());
    EXPECT_FALSE(batch.hasErrors());
    EXPECT_EQ(batch.text(1), std::string(255, 'x'));
}

} // namespace
} // namespace cimple
