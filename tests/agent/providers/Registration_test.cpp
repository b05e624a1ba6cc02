// The registration file and what can be wrong with it and with the libraries it names.
#include "agent/providers/Registration.h"

#include "agent/log/log.h"
#include "agent/providers/provider_table.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <regex>
#include <string>

namespace cimd
{
namespace
{

constexpr const char* kGood = "# comment\n"
                              "[Test_Widget]\r\n"
                              "   provider: Store\n"
                              "   location:cimd_test_providers\n"
                              "   type: instance association\tmethod indication\n"
                              "   namespace: root/test  root/other\n"
                              "   parameters: any: text\n"
                              "\n"
                              "[Test_Gadget]\n"
                              "   provider: Store\n"
                              "   location: cimd_test_providers\n"
                              "   type: instance\n"
                              "   namespace: *";

TEST(Registration, ReadsEntriesInOrder)
{
    const auto entries = parseRegistrations(kGood, "x.reg");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].className.str(), "Test_Widget");
    EXPECT_EQ(entries[0].provider, "Store");
    EXPECT_EQ(entries[0].location, "cimd_test_providers");
    EXPECT_EQ(4U, entries[0].kinds.size());
    EXPECT_EQ(entries[0].nameSpaces, (std::vector<std::string>{"root/test", "root/other"}));
    EXPECT_FALSE(entries[1].has(ProviderKind::Method));
    EXPECT_EQ(entries[1].place, "x.reg:9");
    EXPECT_TRUE(parseRegistrations("", "x.reg").empty());
}

TEST(Registration, NamesFileAndLineOfAnError)
{
    const struct
    {
        const char* text;
        const char* error;
    } rows[] = {
        {"provider: X", "x.reg:1: \"provider\" before the first \"[Class]\""},
        {"\n[A", "x.reg:2: expected \"[Class]\", found \"[A\""},
        {"[ ]", "x.reg:1: expected \"[Class]\", found \"[ ]\""},
        {"[A]\nprovider X", "x.reg:2: expected \"[Class]\" or \"keyword: value\", found \"provider X\""},
        {"[A]\nprovider:", "x.reg:2: \"provider\" has no value"},
        {"[A]\ncolour: red", "x.reg:2: unknown keyword \"colour\""},
        {"[A]\ntype: instance query",
         "x.reg:2: type \"query\" is none of instance, association, method, indication"},
        {"[A]\nprovider: P\ntype: instance\nnamespace: n", "x.reg:1: class A: no \"location\""},
        {"[A]\nprovider: P\nlocation: l\ntype: instance\n[B]", "x.reg:1: class A: no \"namespace\""},
    };
    for (const auto& row : rows)
        try
        {
            parseRegistrations(row.text, "x.reg");
            ADD_FAILURE() << "accepted: " << row.text;
        }
        catch (const RegistrationError& error)
        {
            EXPECT_STREQ(error.what(), row.error);
        }
    EXPECT_THROW(loadRegistrations("/nowhere/x.reg"), RegistrationError);
}

std::string startError(const std::string& registrations)
{
    try
    {
        test::TestCore core(registrations);
        return "started";
    }
    catch (const RegistrationError& error)
    {
        return error.what();
    }
}

TEST(Registration, IsCheckedAgainstClassesAndLibrariesAtStart)
{
    const std::string rest = "\nprovider: Store\ntype: instance\nnamespace: root/test\nlocation: ";
    EXPECT_EQ(startError("[Test_Widget]" + rest + "cimd_test_providers"), "started");
    EXPECT_EQ(startError("[Test_None]" + rest + "cimd_test_providers"),
              "x.reg:1: class Test_None is not in the class repository");
    const std::string missing = startError("[Test_Widget]" + rest + "no_such_library");
    EXPECT_EQ(missing.rfind("x.reg:1: class Test_Widget: ", 0), 0U) << missing;
    EXPECT_NE(missing.find("libno_such_library.so"), std::string::npos) << missing;
}

TEST(Registration, ReportsFactoriesThatAreMissingOrFail)
{
    const std::string rest = "\nlocation: cimd_test_providers\ntype: instance method\nnamespace: root/test\n";
    test::TestCore core("[Test_Widget]\nprovider: Absent" + rest + "[Test_Faulty]\nprovider: Faulty" + rest);
    const auto outcome = [&](const ObjectPath& path, const char* method) {
        return test::outcome([&] { core.service().invokeMethod({}, {test::kNameSpace, path, method, {}}); });
    };
    EXPECT_NE(
        outcome(test::named("Test_Widget", "w1"), "Reset").find("Absent_Create_MethodMI is not exported"),
        std::string::npos);
    const ObjectPath faulty = test::named("Test_Faulty", "good", "Mode");
    EXPECT_EQ(outcome(faulty, "Go"), "1 not ready, attempt 1");
    EXPECT_EQ(outcome(faulty, "Go"), "1 not ready, attempt 2"); // every request tries again
    const std::string table = providerTable(core.providers());
    for (const char* row :
         {"Test_Widget +instance, method +1 +1 .*failed: .*Absent_Create_MethodMI is not exported",
          "Test_Faulty +instance, method +2 +2 .*failed: not ready, attempt 2"})
        EXPECT_TRUE(std::regex_search(table, std::regex(row))) << table;
}

// A provider that cannot answer shows who is asked: an association that cannot have the source at one end,
// and the result at the other, is left alone.
TEST(Registration, RefusesAnIncompleteInterfaceWhenItIsNeeded)
{
    test::TestCore core("[Test_Ownership]\nprovider: Faulty\nlocation: cimd_test_providers\n"
                        "type: association\nnamespace: root/test\n");
    const struct
    {
        const char *source, *resultClass, *role, *resultRole;
        bool isAsked;
    } rows[] = {
        {"Test_Widget", "", "", "", true},
        {"Test_Gadget", "", "owner", "", true},
        {"Test_Sprocket", "Test_Base", "", "", true},
        {"Test_Sprocket", "Test_Gadget", "", "OWNER", true},
        {"Test_Unserved", "", "", "", false},
        {"Test_Widget", "", "Owned", "", false},
        {"Test_Widget", "Test_Widget", "", "", false},
        {"Test_Widget", "", "", "Owner", false},
    };
    for (const auto& row : rows)
    {
        Collector<ObjectPath> paths;
        const AssociatorNamesRequest request{
            test::kNameSpace, test::named(row.source, "x"), "", row.resultClass, row.role, row.resultRole};
        const std::string got = test::outcome([&] { core.service().associatorNames({}, request, paths); });
        const bool isRefused =
            got.find("Faulty_Create_AssociationMI returned no complete interface") != std::string::npos;
        EXPECT_EQ(row.isAsked, isRefused) << row.source << ": " << got;
        EXPECT_EQ(row.isAsked, got != "OK") << row.source;
    }
}

TEST(Libraries, WriteToTheAgentsLogAtItsLevel)
{
    const auto linesAt = [](LogLevel level)
    {
        std::string lines;
        setLogWriter([&](LogLevel, std::string_view line) { lines.append(line.substr(line.find(' ') + 1)); });
        const LogLevel before = logLevel();
        setLogLevel(level);
        test::TestCore().countOf("Test_Widget");
        setLogLevel(before);
        setLogWriter({});
        return lines;
    };
    EXPECT_EQ(linesAt(LogLevel::Info), "info module: store seeded");
    EXPECT_EQ(linesAt(LogLevel::Warning), "");
}

} // namespace
} // namespace cimd
