// Operations from many threads at once; what matters is what the sanitizers say.
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <thread>

namespace cimd
{
namespace
{

using test::kNameSpace;
using test::named;

TEST(Concurrency, ReadsWritesAndUpCallsRunSideBySide)
{
    test::TestCore core;
    const auto work = [&core](const std::string& name)
    {
        const CimService& service = core.service();
        Instance instance("Test_Gadget");
        instance.set("Name", CimValue::string(name));
        GetInstanceRequest fromThread;
        fromThread.nameSpace = kNameSpace;
        fromThread.path = named("Test_Faulty", "from a thread", "Mode");
        AssociatorsRequest follow;
        follow.nameSpace = kNameSpace;
        follow.path = named("Test_Widget", "w1");
        for (int round = 0; round < 50; ++round)
        {
            Collector<Instance> found;
            service.createInstance(core.context, {kNameSpace, instance});
            core.countOf("Test_Base");
            service.associators(core.context, follow, found);
            EXPECT_EQ(found.items.size(), 4U);
            service.getInstance(core.context, fromThread);
            service.deleteInstance(core.context, {kNameSpace, named("Test_Gadget", name)});
        }
    };
    std::vector<std::thread> threads(8);
    for (std::size_t id = 0; id < threads.size(); ++id)
        threads[id] = std::thread(
            [&, id] { EXPECT_EQ("OK", test::outcome([&] { work("own" + std::to_string(id)); })); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(core.countOf("Test_Base"), 4U);
}

} // namespace
} // namespace cimd
