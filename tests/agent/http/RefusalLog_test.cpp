// How often the log tells the same.
#include "agent/http/RefusalLog.h"

#include <gtest/gtest.h>
#include <vector>

namespace cimd
{
namespace
{

TEST(RefusalLogTest, TellsEachReasonOnceAMinuteAndCountsTheRest)
{
    std::vector<std::string> lines;
    setLogWriter([&](LogLevel, std::string_view line)
                 { lines.emplace_back(line.substr(line.find(' ') + 1)); });
    const Time start{};
    {
        RefusalLog refusals;
        const auto add = [&](const char* reason, const std::string& peer) {
            refusals.add({LogLevel::Warning, "http", reason, ", in detail"}, peer, start);
        };
        add("one", "192.0.2.1:1");
        add("two", "192.0.2.1:2");
        add("one", "192.0.2.1:3");
        add("one", "[2001:db8::1]:4");
        add("one", "[2001:db8::2]:5");
        EXPECT_EQ(start + std::chrono::minutes(1), refusals.tellAll(start + std::chrono::seconds(59)));
        EXPECT_EQ(kNever, refusals.tellAll(start + std::chrono::minutes(1)));
        add("one", "192.0.2.1:6");
        add("one", "192.0.2.1:7");
    }
    setLogWriter({});
    EXPECT_EQ(
        (std::vector<std::string>{"warning http: 192.0.2.1:1: one, in detail",
                                  "warning http: 192.0.2.1:2: two, in detail",
                                  "warning http: 3 more within a minute, most from 2001:db8::/64 (2): one",
                                  "warning http: 192.0.2.1:6: one, in detail",
                                  "warning http: 1 more within a minute, most from 192.0.2.1 (1): one"}),
        lines);
}

} // namespace
} // namespace cimd
