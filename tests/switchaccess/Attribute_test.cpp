// Tests of how keys are made from formats, and of attributes that are read in a batch.
#include "switchaccess/Attribute.h"

#include "common/owned.h"
#include "simulator/testing/SimSwitch.h"
#include "support/substitute.h"

#include "VRAX_FCPort.h"

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
        {"Oper.UserPort.0.%s.WWN", {}, nullptr},
        {"Oper.Switch.Echo.%2$s", {"26"}, nullptr},
        {"%s.%s", {"a"}, nullptr},
        {"%s", {nullptr}, nullptr},
        {"100%", {}, nullptr},
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

constexpr Attribute<VRAX_FCPort> kAttributes[] = {
    {"Oper.UserPort.0.%s.SymPortName", put<&VRAX_FCPort::ElementName>},
    {"Oper.UserPort.0.%s.MaxCredit", put<&VRAX_FCPort::BBCredits, decimal16>, kStaysNull},
    {"Oper.UserPort.0.%s.OperState", put<&VRAX_FCPort::Description, inUpperCase>, "Unknown"},
    {"Oper.UserPort.0.%s.AdminState"},
};

TEST(Attributes, FillPropertiesAndStandInForValuesThatAreNotThere)
{
    static_assert(entryOf(kAttributes, ".AdminState") == 3);
    simulator::SimSwitch sim = simulator::SimSwitch::make().ports(2);
    sim.changePort(1, [](auto& port) { port.maxCredit = 12; });
    Attribute_Reader<VRAX_FCPort> reader(kAttributes);
    const auto filled = [&]
    {
        std::unique_ptr<VRAX_FCPort, Instance_Destroyer> port(VRAX_FCPort::create(true));
        reader.fill(*port);
        return port;
    };
    ASSERT_TRUE(reader.read({"1"}));
    EXPECT_EQ(filled()->BBCredits.value, 12);
    EXPECT_EQ(filled()->Description.value, "ONLINE");
    EXPECT_STREQ(reader.text(3), "Online");

    for (const char* key : {"MaxCredit", "OperState", "SymPortName"})
        sim.failKey(std::string("Oper.UserPort.0.1.") + key, XPL_NOT_AVAILABLE);
    ASSERT_TRUE(reader.read({"1"})) << "a value that is not there is no error";
    EXPECT_TRUE(filled()->BBCredits.null);
    EXPECT_EQ(filled()->Description.value, "UNKNOWN");
    EXPECT_FALSE(filled()->ElementName.null);
    EXPECT_EQ(filled()->ElementName.value, "");

    EXPECT_TRUE(reader.read({"0"})) << "each read stands for itself";
    EXPECT_EQ(filled()->Description.value, "ONLINE");
    sim.failKey("Oper.UserPort.0.0.AdminState", 5);
    EXPECT_FALSE(reader.read({"0"})) << "any other status is an error";
    EXPECT_FALSE(reader.read({std::string(250, '0').c_str()})) << "the key does not fit";
}

} // namespace
} // namespace cimple
