// Operations from many threads at once; what matters is what the sanitizers say.
#include "tests/agent/testproviders/TestCore.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;
using test::outcome;
using test::TestCore;

TEST(Concurrency, ReadsWritesAndUpCallsRunSideBySide)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 50;
    TestCore core;
    std::atomic<int> failures{0};
    const auto expectOk = [&](const std::function<void()>& action)
    {
        if (const std::string got = outcome(action); got != "OK")
        {
            ++failures;
            ADD_FAILURE() << got;
        }
    };
    std::vector<std::thread> threads;
    for (int id = 0; id < kThreads; ++id)
        threads.emplace_back(
            [&, id]
            {
                const std::string name = "own" + std::to_string(id);
                for (int round = 0; round < kRounds && failures == 0; ++round)
                {
                    Instance instance("Test_Gadget");
                    instance.set("Name", CimValue::string(name));
                    expectOk([&] { core.service().createInstance(core.context, {kNameSpace, instance}); });
                    expectOk([&] { core.names("Test_Base"); });
                    GetInstanceRequest get;
                    get.nameSpace = kNameSpace;
                    get.path = named("Test_Widget", "w1");
                    expectOk([&] { core.service().getInstance(core.context, get); });
                    AssociatorsRequest follow;
                    follow.nameSpace = kNameSpace;
                    follow.path = get.path;
                    Collector<Instance> found;
                    expectOk([&] { core.service().associators(core.context, follow, found); });
                    EXPECT_EQ(found.items.size(), 4U);
                    get.path = named("Test_Faulty", "from a thread", "Mode");
                    expectOk([&] { core.service().getInstance(core.context, get); });
                    expectOk(
                        [&] {
                            core.service().deleteInstance(core.context,
                                                          {kNameSpace, named("Test_Gadget", name)});
                        });
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(core.names("Test_Base").size(), 4U);
}

} // namespace
} // namespace cimd
