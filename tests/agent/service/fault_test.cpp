// What the replayed messages of tests/wire cannot show: the log, sinks that refuse, properties given twice.
#include "agent/log/log.h"
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

TEST(FaultyProviders, AreReportedOnce)
{
    std::vector<std::string> lines;
    setLogWriter([&](LogLevel, std::string_view line)
                 { lines.emplace_back(line.substr(line.find(' ') + 1)); });
    TestCore core;
    for (int i = 0; i < 2; ++i)
    {
        GetInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.path = named("Test_Faulty", "no done", "Mode");
        EXPECT_EQ("OK", outcome([&] { core.service().getInstance(core.context, request); }));
    }
    setLogWriter({});
    EXPECT_EQ(
        std::vector<std::string>{"warning providers: GetInstance Test_Faulty: provider Faulty succeeded "
                                 "without saying that it was done; said once for this provider"},
        lines);
}

// Readers of messages refuse it themselves; providers that make requests have no such reader.
TEST(Properties, AreTakenOnce)
{
    TestCore core;
    Instance instance("Test_Sprocket");
    instance.properties() = {{"Teeth", CimValue::uint32(1), {}}, {"TEETH", CimValue::uint32(1), {}}};
    EXPECT_EQ("4 property Teeth of class Test_Sprocket is given twice",
              outcome(
                  [&] {
                      core.service().createInstance(core.context, {kNameSpace, instance});
                  }));
}

class Refusing : public Sink<ObjectPath>
{
  public:
    void put(const ObjectPath&) override
    {
        ++count;
        throw std::length_error("the client went away");
    }

    int count = 0;
};

TEST(Sinks, EndAnOperationByThrowing)
{
    TestCore core;
    Refusing sink;
    EXPECT_THROW(core.service().enumerateInstanceNames(core.context, {kNameSpace, "Test_Base"}, sink),
                 std::length_error);
    EXPECT_EQ(sink.count, 1); // neither the provider nor the fan-out goes on
    EXPECT_EQ(core.countOf("Test_Base"), 4U);
}

} // namespace
} // namespace cimd
