// Tests of the module's log.
#include "Log_Capture.h"

#include <gtest/gtest.h>

namespace
{

TEST(CimLog, WritesFromTheConfiguredLevelUp)
{
    const std::vector<Log_Capture::Line> all = {{1, "trace"}, {2, "info"}, {4, "critical"}};
    for (int lowest = kLogTrace; lowest <= kLogCritical + 1; ++lowest)
    {
        const Log_Capture log(lowest);
        std::vector<Log_Capture::Line> expected;
        for (const auto& [level, text] : all)
        {
            cim_log(level, "%s\n", text.c_str());
            if (level >= lowest)
                expected.emplace_back(level, text);
        }
        EXPECT_EQ(log.take(), expected) << "lowest level " << lowest;
    }
}

TEST(CimLog, TakesOffOneClosingLineFeedAndKeepsLongLinesWhole)
{
    std::vector<std::pair<std::string, std::string>> rows = {
        {"a\n", "a"}, {"a", "a"}, {"\n", ""}, {"", ""}, {"a\n\n", "a\n"}, {"a \n b\n", "a \n b"}};
    // Around the size of the buffer that ordinary lines are formatted in, and far beyond it.
    for (const std::size_t length : {510u, 511u, 512u, 513u, 5000u})
        rows.emplace_back(std::string(length, 'x') + "\n", std::string(length, 'x'));
    for (const auto& [written, received] : rows)
    {
        const Log_Capture log;
        cim_log(kLogCritical, "%s", written.c_str());
        EXPECT_EQ(log.take(), std::vector<Log_Capture::Line>({{kLogCritical, received}}));
    }
}

} // namespace
