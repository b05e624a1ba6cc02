// Following associations with every filter.
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::label;
using test::named;
using test::outcome;
using test::TestCore;

std::string join(const std::vector<std::string>& labels)
{
    std::string text;
    for (const std::string& one : labels)
        text += (text.empty() ? "" : " ") + one.substr(5); // without "Test_"
    return text;
}

TEST(Associations, ObeyEveryFilter)
{
    struct Row
    {
        const char* source;
        const char* assocClass;
        const char* resultClass;
        const char* role;
        const char* resultRole;
        const char* expected;
    };
    // w1 is linked to s1 and w2, strongly from g1, and owns s1; w2 is strongly linked to itself.
    const Row rows[] = {
        {"Test_Widget:w1", "", "", "", "", "Sprocket:s1 Widget:w2 Gadget:g1 Sprocket:s1"},
        {"Test_Widget:w1", "Test_Link", "", "", "", "Sprocket:s1 Widget:w2 Gadget:g1"},
        {"Test_Widget:w1", "TEST_STRONGLINK", "", "", "", "Gadget:g1"},
        {"Test_Widget:w1", "Test_Ownership", "", "", "", "Sprocket:s1"},
        {"Test_Widget:w1", "", "Test_Widget", "", "", "Widget:w2 Gadget:g1"},
        {"Test_Widget:w1", "", "Test_Gadget", "", "", "Gadget:g1"},
        {"Test_Widget:w1", "", "Test_Faulty", "", "", ""},
        {"Test_Widget:w1", "", "", "left", "", "Sprocket:s1 Widget:w2"},
        {"Test_Widget:w1", "", "", "", "LEFT", "Gadget:g1"},
        {"Test_Widget:w1", "", "", "Owner", "", "Sprocket:s1"},
        {"Test_Widget:w1", "", "", "Owned", "", ""},
        {"Test_Widget:w1", "", "", "Left", "Left", ""},
        {"Test_Widget:w1", "Test_Link", "Test_Sprocket", "Left", "Right", "Sprocket:s1"},
        {"Test_Sprocket:s1", "", "", "", "", "Widget:w1 Widget:w1"},
        {"Test_Sprocket:s1", "Test_Ownership", "Test_Base", "Owned", "Owner", "Widget:w1"},
        {"Test_Gadget:g1", "", "", "", "", "Widget:w1"},
        {"Test_Widget:w2", "Test_StrongLink", "", "", "", "Widget:w2 Widget:w2"}, // seen from both its ends
        {"Test_Widget:w2", "Test_StrongLink", "", "Right", "", "Widget:w2"},
        {"Test_Widget:nobody", "", "", "", "", ""},
    };
    TestCore core;
    for (const Row& row : rows)
    {
        const std::string source = row.source;
        const std::size_t colon = source.find(':');
        AssociatorNamesRequest byName{kNameSpace,
                                      named(source.substr(0, colon), source.substr(colon + 1)),
                                      row.assocClass,
                                      row.resultClass,
                                      row.role,
                                      row.resultRole};
        Collector<ObjectPath> paths;
        core.service().associatorNames(core.context, byName, paths);
        std::vector<std::string> labels;
        for (const ObjectPath& path : paths.items)
            labels.push_back(label(path));
        EXPECT_EQ(join(labels), row.expected)
            << source << " names of " << row.assocClass << '/' << row.resultClass;

        AssociatorsRequest whole;
        whole.nameSpace = kNameSpace;
        whole.path = byName.path;
        whole.assocClass = byName.assocClass;
        whole.resultClass = byName.resultClass;
        whole.role = byName.role;
        whole.resultRole = byName.resultRole;
        Collector<Instance> instances;
        core.service().associators(core.context, whole, instances);
        ASSERT_EQ(instances.items.size(), paths.items.size()) << source;
        for (std::size_t i = 0; i < paths.items.size(); ++i)
            EXPECT_EQ(instances.items[i].path().text(), paths.items[i].text());
    }
}

TEST(Associations, ReturnTheAssociationsThemselves)
{
    struct Row
    {
        const char* name;
        const char* resultClass;
        const char* role;
        std::size_t count;
    };
    const Row rows[] = {{"w1", "", "", 4},
                        {"w1", "Test_Link", "", 3},
                        {"w1", "Test_Link", "Left", 2},
                        {"w1", "Test_StrongLink", "", 1},
                        {"w1", "Test_Ownership", "Left", 0},
                        {"w2", "Test_StrongLink", "", 2}};
    TestCore core;
    for (const Row& row : rows)
    {
        Collector<ObjectPath> paths;
        core.service().referenceNames(
            core.context, {kNameSpace, named("Test_Widget", row.name), row.resultClass, row.role}, paths);
        EXPECT_EQ(paths.items.size(), row.count) << row.name << ' ' << row.resultClass << ' ' << row.role;

        ReferencesRequest request;
        request.nameSpace = kNameSpace;
        request.path = named("Test_Widget", row.name);
        request.resultClass = row.resultClass;
        request.role = row.role;
        Collector<Instance> instances;
        core.service().references(core.context, request, instances);
        ASSERT_EQ(instances.items.size(), row.count);
        for (std::size_t i = 0; i < row.count; ++i)
            EXPECT_EQ(instances.items[i].path().text(), paths.items[i].text());
    }
    // The provider said neither namespace nor the declared spelling of keys.
    Collector<Instance> owned;
    core.service().references(
        core.context,
        {kNameSpace, named("Test_Widget", "w1"), "Test_Ownership", "", false, false, {}},
        owned);
    EXPECT_EQ(owned.items.at(0).path().text(),
              "root/test:Test_Ownership.Owned=\"root/test:Test_Sprocket.Name=\\\"s1\\\"\",Owner=\"root/"
              "test:Test_Widget."
              "Name=\\\"w1\\\"\"");
    EXPECT_EQ(owned.items[0].find("Owned")->asReference().text(), "root/test:Test_Sprocket.Name=\"s1\"");
}

TEST(Associations, SelectPropertiesOfTheFarEnd)
{
    TestCore core;
    AssociatorsRequest request;
    request.nameSpace = kNameSpace;
    request.path = named("Test_Gadget", "g1");
    request.properties = {"note"};
    request.includeClassOrigin = true;
    Collector<Instance> found;
    core.service().associators(core.context, request, found);
    ASSERT_EQ(found.items.size(), 1U);
    ASSERT_EQ(found.items[0].properties().size(), 1U);
    EXPECT_EQ(found.items[0].properties()[0].value, CimValue::string("seeded"));
    EXPECT_EQ(found.items[0].properties()[0].classOrigin.str(), "Test_Base");
    EXPECT_EQ(found.items[0].path().keys().size(), 1U);
}

TEST(Associations, RefuseUnknownClasses)
{
    TestCore core;
    const auto names =
        [&](const char* nameSpace, ObjectPath path, const char* assocClass, const char* resultClass)
    {
        Collector<ObjectPath> paths;
        return outcome(
            [&] {
                core.service().associatorNames(
                    core.context, {nameSpace, path, assocClass, resultClass, "", ""}, paths);
            });
    };
    const ObjectPath w1 = named("Test_Widget", "w1");
    EXPECT_EQ(names("root/none", w1, "", ""), "3 namespace root/none does not exist");
    EXPECT_EQ(names("root/test", named("Test_None", "x"), "", ""),
              "5 class Test_None does not exist in namespace root/test");
    EXPECT_EQ(names("root/test", w1, "Test_None", ""),
              "4 AssocClass: class Test_None does not exist in namespace root/test");
    EXPECT_EQ(names("root/test", w1, "", "Test_None"),
              "4 ResultClass: class Test_None does not exist in namespace root/test");
    EXPECT_EQ(names("root/test", ObjectPath("", "Test_Widget"), "", ""),
              "4 class Test_Widget: key Name is missing");
    // Links of a class that nothing of the source's class can have part in are not asked for.
    EXPECT_EQ(names("root/test", named("Test_Faulty", "x", "Mode"), "", ""), "OK");
}

} // namespace
} // namespace cimd
