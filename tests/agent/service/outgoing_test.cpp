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

TEST(OutgoingCheck, FindsWhatDoesNotFitTheClass)
{
    const ClassInfo& info = *test::repository().find("Test_Sprocket");
    const char* const right = "Test_Sprocket";
    const CimValue s1 = CimValue::string("s1");
    const CimValue teeth = CimValue::uint32(7);
    const ObjectPath path = named(right, "s1");
    ObjectPath withHost = path;
    withHost.setHost("switch");
    ObjectPath twoKeys = path;
    twoKeys.setKey("Teeth", teeth);
    ObjectPath numbered(path.nameSpace(), path.className());
    numbered.setKey("Name", teeth);
    const struct
    {
        const char* className;
        ObjectPath path;
        std::vector<Property> properties;
        std::string complaint; // empty: none
    } rows[] = {
        {right, path, {{"Name", s1, {}}, {"Teeth", teeth, {}}}, ""},
        {right, path, {{"Teeth", CimValue::null(CimType::Uint32), {}}}, ""},
        {"test_Sprocket", path, {}, "it calls itself test_Sprocket"},
        {right, named("Test_sprocket", "s1"), {}, "its path is of class Test_sprocket"},
        {right, withHost, {}, "its path has a host or no namespace"},
        {right, twoKeys, {}, "its path has 2 of 1 keys"},
        {right, named(right, "s1", "NAME"), {}, "key Name is called NAME"},
        {right, numbered, {}, "key Name is string, not uint32"},
        {right, path, {{"Tooth", teeth, {}}}, "there is no property Tooth"},
        {right, path, {{"teeth", teeth, {}}}, "property Teeth is called teeth"},
        {right, path, {{"Teeth", s1, {}}}, "property Teeth is uint32, not string"},
        {right, path, {{"Teeth", teeth, {}}, {"Teeth", teeth, {}}}, "property Teeth is out of order"},
        {right, path, {{"Teeth", teeth, {}}, {"Name", s1, {}}}, "property Name is out of order"},
        {right, path, {{"Name", teeth, {}}}, "property Name is string, not uint32"},
        {right,
         path,
         {{"Name", CimValue::string("s2"), {}}},
         "property Name differs from the key of the path"},
    };
    for (const auto& row : rows)
    {
        Instance instance(row.className);
        instance.setPath(row.path);
        instance.properties() = row.properties;
        const std::string got = outcome([&] { checkOutgoing(instance, info); });
        const std::string prefix = "1 inconsistent result of class Test_Sprocket: ";
        EXPECT_EQ(0U, got.rfind(row.complaint.empty() ? "OK" : prefix + row.complaint, 0))
            << got << "\nexpected: " << row.complaint;
    }
}

} // namespace
} // namespace cimd
