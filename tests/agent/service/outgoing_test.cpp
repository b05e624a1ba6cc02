// Results that do not fit their class are found, with class and property in the message.
#include "agent/service/outgoing_check.h"

#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::named;
using test::outcome;
using test::TestCore;

TEST(OutgoingCheck, FindsWhatDoesNotFitTheClass)
{
    TestCore core;
    const ClassInfo& info = *core.repository().find("Test_Sprocket");
    const CimValue s1 = CimValue::string("s1");
    const CimValue teeth = CimValue::uint32(7);
    const ObjectPath path = named("Test_Sprocket", "s1");
    ObjectPath withHost = path;
    withHost.setHost("switch");
    ObjectPath twoKeys = path;
    twoKeys.setKey("Teeth", teeth);
    ObjectPath numbered(path.nameSpace(), path.className());
    numbered.setKey("Name", teeth);
    const std::string label = "1 inconsistent result of class Test_Sprocket: ";
    const struct
    {
        const char* className;
        ObjectPath path;
        std::vector<Property> properties;
        const char* complaint; // null: none
    } rows[] = {
        {"Test_Sprocket", path, {{"Name", s1, {}}, {"Teeth", teeth, {}}}, nullptr},
        {"Test_Sprocket", path, {}, nullptr},
        {"Test_Sprocket", path, {{"Teeth", CimValue::null(CimType::Uint32), {}}}, nullptr},
        {"test_Sprocket", path, {}, "it calls itself test_Sprocket"},
        {"Test_Sprocket", named("Test_sprocket", "s1"), {}, "its path is of class Test_sprocket"},
        {"Test_Sprocket", withHost, {}, "its path has a host or no namespace"},
        {"Test_Sprocket", twoKeys, {}, "its path has 2 of 1 keys"},
        {"Test_Sprocket", named("Test_Sprocket", "s1", "NAME"), {}, "key Name is called NAME"},
        {"Test_Sprocket", numbered, {}, "key Name is string, not uint32"},
        {"Test_Sprocket", path, {{"Tooth", teeth, {}}}, "there is no property Tooth"},
        {"Test_Sprocket", path, {{"teeth", teeth, {}}}, "property Teeth is called teeth"},
        {"Test_Sprocket", path, {{"Teeth", s1, {}}}, "property Teeth is uint32, not string"},
        {"Test_Sprocket",
         path,
         {{"Teeth", teeth, {}}, {"Teeth", teeth, {}}},
         "property Teeth is out of order"},
        {"Test_Sprocket", path, {{"Teeth", teeth, {}}, {"Name", s1, {}}}, "property Name is out of order"},
        {"Test_Sprocket",
         path,
         {{"Name", CimValue::string("s2"), {}}},
         "property Name differs from the key of the path root/test:Test_Sprocket.Name=\"s1\""},
    };
    for (const auto& row : rows)
    {
        Instance instance(row.className);
        instance.setPath(row.path);
        instance.properties() = row.properties;
        const std::string got = outcome([&] { checkOutgoing(instance, info); });
        const std::string expected = row.complaint != nullptr ? label + row.complaint : "OK";
        EXPECT_EQ(0U, got.rfind(expected, 0)) << got << "\nexpected: " << expected;
    }
}

} // namespace
} // namespace cimd
