// Tests of a process that never opens a scenario: the first platform calls, from several threads, open the
// one that the environment names, or the built-in one.
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <future>

// Each statement runs in a process of its own, which has made no call before.
TEST(EnvironmentDeathTest, NamesTheScenario)
{
    const auto startWith = [](const char* path)
    {
        ::setenv("VRAX_SCENARIO", path, 1);
        std::fprintf(stderr, "started as %s\n", valueOf("Config.Switch.SymName").c_str());
        std::_Exit(0);
    };
    EXPECT_EXIT(startWith(TEST_DIR "/renamed.json"), testing::ExitedWithCode(0), "started as from-a-file");
    EXPECT_EXIT(startWith(""), testing::ExitedWithCode(0), "started as core-a");
    EXPECT_DEATH(
        startWith("/no/such/site.json"),
        "simulated switch: VRAX_SCENARIO: /no/such/site.json: cannot read the scenario: No such file");
    EXPECT_DEATH(startWith(TEST_DIR "/builtin_test.cpp"),
                 "simulated switch: VRAX_SCENARIO: .*builtin_test.cpp:1:1: syntax error");
}

TEST(BuiltIn, TheFirstCallsOpenIt)
{
    ::unsetenv("VRAX_SCENARIO");
    std::vector<std::future<std::string>> names;
    for (int i = 0; i < 4; ++i)
        names.push_back(std::async(std::launch::async, [] { return valueOf("Config.Switch.SymName"); }));
    for (auto& name : names)
        EXPECT_EQ("core-a", name.get());
    const auto counter = []
    { return std::strtoull(valueOf("Oper.UserPort.0.3.C64.TotalRxWords").c_str(), nullptr, 16); };
    const auto before = counter();
    EXPECT_GT(before, 1000000u) << "has been up for months";
    EXPECT_GE(counter(), before);
}
