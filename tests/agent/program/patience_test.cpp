// cimd as a process on providers that do not come back, and on one that has more to give than fits in memory.
#include "agent/run/exit_status.h"
#include "tests/agent/http/RawClient.h"
#include "tests/agent/program/Process.h"
#include "tests/agent/program/wild_agent.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

using namespace test;

// Sanitizers keep what was freed.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMemoryIsPlain = false;
#else
constexpr bool kMemoryIsPlain = true;
#endif

// A line of /proc/PID/status in KiB.
std::size_t memory(pid_t pid, const std::string& name)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, name.size() + 1, name + ":") == 0)
            return std::stoul(line.substr(name.size() + 1));
    return 0;
}

// Reads an answer without keeping it; gives the number of times that a text without line breaks occurs.
std::size_t countInAnswer(RawClient& client, const std::string& text)
{
    std::size_t count = 0;
    std::string rest;
    while (rest.find("\r\n0\r\n\r\n") == std::string::npos)
    {
        const std::string part = client.receiveOnce();
        if (part.empty())
            return 0;
        rest += part;
        std::size_t last = 0;
        for (std::size_t at = 0; (at = rest.find(text, at)) != std::string::npos; at += text.size())
        {
            ++count;
            last = at + text.size();
        }
        rest.erase(0, std::max(last, rest.size() - std::min(rest.size(), text.size())));
    }
    return count;
}

TEST(PatienceTest, AMillionInstancesDoNotStayInMemory)
{
    constexpr std::size_t kInstances = kMemoryIsPlain ? 1'000'000 : 100'000; // for time's sake
    constexpr std::size_t kMostGrowth = 8 * 1024;                            // KiB
    Process cimd(words({"--no-supervisor", "--max-operation-seconds", "3600"}));
    const std::uint16_t port = portOf(cimd.readLine());
    RawClient client(port);
    std::size_t before = 0;
    for (const std::size_t count : {std::size_t{1000}, kInstances})
    {
        before = memory(cimd.pid(), "VmHWM");
        EXPECT_EQ(200, client.ask(setCount(count)).status);
        client.send(enumerateInstances());
        // A chunk's end may part a name in two.
        EXPECT_NEAR(static_cast<double>(count),
                    static_cast<double>(countInAnswer(client, "<VALUE.NAMEDINSTANCE>")),
                    static_cast<double>(count) / 100);
    }
    if (kMemoryIsPlain)
        EXPECT_LT(memory(cimd.pid(), "VmHWM"), before + kMostGrowth);
    cimd.signal(SIGTERM);
    EXPECT_EQ(0, cimd.wait());
}

TEST(PatienceTest, AnOperationThatHangsIsAnErrorAndItsThreadReplaced)
{
    Process cimd(words({"--max-operation-seconds", "1", "--max-workers", "1"}));
    const std::uint16_t port = portOf(cimd.readLine());
    for (int i = 0; i < 2; ++i)
        EXPECT_NE(
            std::string::npos,
            ask(port, "waits")
                .find(
                    "<ERROR CODE=\"1\" DESCRIPTION=\"GetInstance of Test_Wild did not finish within 1 s\""));
    EXPECT_TRUE(isInstance(ask(port, "opens the gate")));
    EXPECT_TRUE(isInstance(ask(port, "good")));
    cimd.signal(SIGTERM);
    EXPECT_EQ(0, cimd.wait());
}

TEST(PatienceTest, TooManyThatHangEndTheProcess)
{
    const std::vector<std::string> impatient = {"--max-operation-seconds", "1", "--max-hung-workers", "0"};
    Process supervised(words(impatient));
    const std::uint16_t port = portOf(supervised.readLine());
    ask(port, "waits");
    EXPECT_TRUE(isInstance(ask(port, "good")));
    supervised.readUntil(": did not finish within 1 s; its provider may hang");
    supervised.readUntil("more than 0 operations hang in their providers; ending the process");
    EXPECT_NE(std::string::npos, supervised.readLine().find("GetInstance Test_Wild"));
    supervised.readUntil("ended by itself with exit status " + std::to_string(kExitHung));
    supervised.signal(SIGTERM);
    EXPECT_EQ(0, supervised.wait());
}

} // namespace
} // namespace cimd
