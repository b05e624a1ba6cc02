// Tests of the module's log.
#include "Log_Capture.h"

#include <gtest/gtest.h>

namespace
{

TEST(CimLog, WritesFromTheConfiguredLevelUp)
{
    struct Row
    {
        int lowest;
        std::vector<Log_Capture::Line> written;
    };
    const Row rows[] = {
        {kLogTrace, {{1, "trace"}, {2, "info"}, {4, "critical"}}},
        {kLogInfo, {{2, "info"}, {4, "critical"}}},
        {3, {{4, "critical"}}},
        {kLogCritical, {{4, "critical"}}},
        {kLogCritical + 1, {}},
    };
    for (const Row& row : rows)
    {
        const Log_Capture log(row.lowest);
        cim_log(kLogTrace, "%s\n", "trace");
        cim_log(kLogInfo, "%s\n", "info");
        cim_log(kLogCritical, "%s\n", "critical");
        EXPECT_EQ(log.take(), row.written) << "lowest level " << row.lowest;
    }
}

TEST(CimLog, TakesOffOneClosingLineFeedOnly)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a\n", "a"}, {"a", "a"}, {"\n", ""}, {"", ""}, {"a\n\n", "a\n"}, {"a \n b\n", "a \n b"}};
    for (const auto& [written, received] : rows)
    {
        const Log_Capture log;
        cim_log(kLogCritical, "%s", written);
        const auto lines = log.take();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].second, received);
    }
}

TEST(CimLog, KeepsLongLinesWhole)
{
    // Around the size of the buffer that ordinary lines are formatted in, and far beyond it.
    for (const std::size_t length : {510u, 511u, 512u, 513u, 5000u})
    {
        const Log_Capture log;
        const std::string text(length, 'x');
        cim_log(kLogCritical, "%s\n", text.c_str());
        const auto lines = log.take();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].second, text) << "length " << length;
    }
}

} // namespace
