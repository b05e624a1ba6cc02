// Tests of a process that never opens a scenario: the first platform calls, from several threads, open the
// built-in one.
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <future>

TEST(BuiltIn, TheFirstCallsOpenIt)
{
    std::vector<std::future<std::string>> names;
    for (int i = 0; i < 4; ++i)
    {
        names.push_back(std::async(std::launch::async, [] { return valueOf("Config.Switch.SymName"); }));
    }
    for (auto& name : names)
    {
        EXPECT_EQ("core-a", name.get());
    }
    const auto counter = []
    { return std::strtoull(valueOf("Oper.UserPort.0.3.C64.TotalRxWords").c_str(), nullptr, 16); };
    const auto before = counter();
    EXPECT_GT(before, 1000000u) << "has been up for months";
    EXPECT_GE(counter(), before);
}
