// Who is asked for an enumeration, in which order and namespace, and with what a static method is called.
// What operations take and give is in tests/wire.
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using test::TestCore;

using Names = std::vector<std::string>;

TEST(InstanceOperations, FanOutInOrderOfRegistration)
{
    TestCore core;
    EXPECT_EQ(core.names("TEST_BASE"),
              (Names{"Test_Sprocket:s1", "Test_Widget:w1", "Test_Widget:w2", "Test_Gadget:g1"}));
    EXPECT_EQ(core.names("Test_Widget"), (Names{"Test_Widget:w1", "Test_Widget:w2", "Test_Gadget:g1"}));
    EXPECT_EQ(core.names("Test_Gadget"), (Names{"Test_Gadget:g1"}));

    // The sprocket alone is served in the other namespace.
    Collector<ObjectPath> paths;
    core.service().enumerateInstanceNames(core.context, {"root/other", "Test_Base"}, paths);
    ASSERT_EQ(paths.items.size(), 1U);
    EXPECT_EQ(test::outcome(
                  [&] {
                      core.service().enumerateInstanceNames(core.context, {"root/other", "Test_Link"}, paths);
                  }),
              "7 EnumerateInstanceNames: no provider serves class Test_Link or a subclass of it");
}

TEST(StaticMethods, GetNoInstanceEvenIfOneIsNamed)
{
    TestCore core;
    const InvokeMethodRequest request{test::kNameSpace, test::named("Test_Widget", "w1"), "Total", {}};
    EXPECT_EQ(core.service().invokeMethod(core.context, request).returnValue, CimValue::uint64(0));
}

} // namespace
} // namespace cimd
