// cimd as a process on providers that crash it or do not come back.
#include "agent/run/exit_status.h"
#include "tests/agent/http/RawClient.h"
#include "tests/agent/program/Process.h"
#include "tests/agent/program/wild_agent.h"

#include <csignal>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using namespace test;

TEST(SurvivalTest, ACrashIsReportedAndTheNextRequestServed)
{
    const struct
    {
        const char* mode;
        const char* end;
        bool hasCulprit;
    } rows[] = {
        {"segv", " was ended by SIGSEGV after ", true},
        {"abort", " was ended by SIGABRT after ", true},
        {"thread throws", " was ended by SIGABRT after ", false},
        {"exit", " ended by itself with exit status 7 after ", false},
    };
    Process cimd(words());
    const std::uint16_t port = portOf(cimd.readLine());
    for (const auto& row : rows)
    {
        RawClient waiting = askAndLeaveWaiting(port);
        EXPECT_EQ(0, RawClient(port).ask(getInstance("Test_Wild", row.mode)).status);
        EXPECT_EQ(0, waiting.receive().status);
        EXPECT_TRUE(isInstance(ask(port, "good"))) << "after " << row.mode;

        const std::string end = cimd.readUntil("serving process");
        EXPECT_NE(std::string::npos, end.find(row.end)) << end;
        EXPECT_NE(std::string::npos, end.find("requests in flight: 2")) << end;
        unsigned culprits = 0;
        for (int i = 0; i < 2; ++i)
        {
            const std::string request = cimd.readLine();
            EXPECT_NE(std::string::npos, request.find("GetInstance Test_Wild: 127.0.0.1:")) << request;
            culprits += request.find("crashed here") != std::string::npos ? 1U : 0U;
        }
        EXPECT_EQ(row.hasCulprit ? 1U : 0U, culprits) << row.mode;
    }
    cimd.signal(SIGTERM);
    EXPECT_EQ(0, cimd.wait());
}

TEST(SurvivalTest, CrashesInARowEndIt)
{
    Process cimd(words({"--max-crashes", "3", "--max-crash-seconds", "3600"}));
    const std::uint16_t port = portOf(cimd.readLine());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ("", ask(port, "segv"));
    EXPECT_EQ(kExitGaveUp, cimd.wait());
    cimd.readUntil("crash 2 in a row, giving up at 3");
    cimd.readUntil("giving up after 3 crashes in a row");
    EXPECT_FALSE(canConnect(port));
}

TEST(SurvivalTest, WithoutSupervisorACrashIsTheEnd)
{
    Process cimd(words({"--no-supervisor"}));
    const std::uint16_t port = portOf(cimd.readLine());
    EXPECT_EQ("", ask(port, "segv"));
    EXPECT_EQ(-SIGSEGV, cimd.wait());
}

TEST(SurvivalTest, StopsWhileARequestHangs)
{
    // The grace ends by itself, or the second signal ends it.
    for (const char* grace : {"0", "3600"})
    {
        Process cimd(words({"--max-stop-seconds", grace}));
        const std::uint16_t port = portOf(cimd.readLine());
        RawClient waiting = askAndLeaveWaiting(port);
        cimd.signal(SIGTERM);
        if (*grace != '0')
            cimd.signal(SIGINT);
        EXPECT_EQ(kExitUnfinished, cimd.wait()) << grace;
        EXPECT_EQ(0, waiting.receive().status);
        EXPECT_FALSE(canConnect(port));
    }
}

TEST(SurvivalTest, NothingIsLeftWhenTheSupervisorIsKilled)
{
    Process cimd(words());
    const std::uint16_t port = portOf(cimd.readLine());
    cimd.signal(SIGKILL);
    EXPECT_EQ(-SIGKILL, cimd.wait());
    cimd.readRest();
    EXPECT_FALSE(canConnect(port));
}

} // namespace
} // namespace cimd
