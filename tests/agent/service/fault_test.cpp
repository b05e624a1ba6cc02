// Providers that are wrong: the operation fails and says why, and the server goes on.
#include "agent/log/log.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <mutex>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;
using test::outcome;
using test::TestCore;

// The agent's log for the length of a test.
class LogCapture
{
  public:
    LogCapture()
    {
        setLogWriter(
            [this](LogLevel, std::string_view line)
            {
                const std::lock_guard lock(_mutex);
                _text.append(line).append("\n");
            });
    }
    ~LogCapture() { setLogWriter({}); }

    std::size_t count(const std::string& text)
    {
        const std::lock_guard lock(_mutex);
        std::size_t found = 0;
        for (std::size_t at = _text.find(text); at != std::string::npos; at = _text.find(text, at + 1))
            ++found;
        return found;
    }

  private:
    std::mutex _mutex;
    std::string _text;
};

std::string get(TestCore& core, const char* mode)
{
    return outcome(
        [&]
        {
            GetInstanceRequest request;
            request.nameSpace = kNameSpace;
            request.path = named("Test_Faulty", mode, "Mode");
            core.service().getInstance(core.context, request);
        });
}

TEST(FaultyProviders, FailTheirOperationWithAReason)
{
    struct Row
    {
        const char* mode;
        const char* expected;
    };
    const Row rows[] = {
        {"good", "OK"},
        {"garbage type",
         "1 GetInstance Test_Faulty: the provider's instance is wrong: class Test_Faulty: property Number "
         "was set to "
         "something unreadable: CMPI type 1911 carries no CIM value"},
        {"unknown property", "OK"},
        {"unknown class",
         "1 GetInstance Test_Faulty: the provider returned an instance of the unknown class Test_Nowhere"},
        {"missing key",
         "1 GetInstance Test_Faulty: the provider's instance is wrong: class Test_Faulty: key Mode is "
         "missing"},
        {"key differs",
         "1 GetInstance Test_Faulty: the provider's instance is wrong: class Test_Faulty: key property Mode "
         "differs "
         "from the path"},
        {"another instance",
         "1 the provider returned root/test:Test_Faulty.Mode=\"good\" for "
         "root/test:Test_Faulty.Mode=\"another instance\""},
        {"foreign object",
         "1 GetInstance Test_Faulty: the provider returned something unusable: not an object of this broker"},
        {"path instead",
         "1 GetInstance Test_Faulty: the provider returned an object path, which the operation does not"},
        {"no done", "OK"},
        {"after done",
         "1 GetInstance Test_Faulty: the provider returned a result after it said there were no more"},
        {"throws anything", "1 GetInstance Test_Faulty: the provider threw an exception"},
        {"too deep", "27 providers called each other more than 32 levels deep"},
        {"unheard of", "6 GetInstance Test_Faulty: the provider answered CIM_ERR_NOT_FOUND without a reason"},
        {"many objects", "OK"},
    };
    LogCapture log;
    TestCore core;
    for (const Row& row : rows)
    {
        const std::string got = get(core, row.mode);
        EXPECT_EQ(got.rfind(row.expected, 0), 0U) << row.mode << ": " << got;
    }
    EXPECT_EQ(get(core, "good"), "OK");
    get(core, "unknown property");
    EXPECT_LE(log.count("class Test_Faulty has no property Extra"), 1U);
    // A fault of every call is reported once.
    get(core, "no done");
    EXPECT_EQ(log.count("GetInstance Test_Faulty: provider Faulty succeeded without saying that it was done"),
              1U);
}

TEST(ProviderThreads, MakeRequestsOnceAttached)
{
    TestCore core;
    GetInstanceRequest request;
    request.nameSpace = kNameSpace;
    request.path = named("Test_Faulty", "from a thread", "Mode");
    const Instance found = core.service().getInstance(core.context, request);
    EXPECT_EQ(*found.find("Number"), CimValue::uint32(4)); // all instances of Test_Base
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
    EXPECT_EQ(core.names("Test_Base").size(), 4U);
}

} // namespace
} // namespace cimd
