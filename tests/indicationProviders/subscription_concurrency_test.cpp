// Listeners and subscriptions are read by many while clients and the delivery change them: nobody waits for
// ever, and what is served is whole.
#include "tests/indicationProviders/Subscription_Test.h"

#include <atomic>
#include <thread>

namespace cimple
{
namespace
{

constexpr int kReaders = 3;
constexpr int kRounds = 60;

class Subscription_Concurrency : public Subscription_Test
{
};

TEST_F(Subscription_Concurrency, ReadersAndWritersComeToTheirEnd)
{
    begin();
    sim.recordKeys(false);
    const Log_Capture log; // of what was deleted under a load
    std::atomic<bool> changing{true};
    std::vector<std::thread> threads;
    for (int reader = 0; reader < kReaders; ++reader)
    {
        threads.emplace_back(
            [&changing]
            {
                while (changing)
                {
                    for (const std::string& pair : pairs())
                        EXPECT_TRUE(pair == "failed" || pair.find(' ') + 1 < pair.size()) << pair;
                    for (const std::string& name : listeners())
                        EXPECT_FALSE(name.empty());
                }
            });
    }
    // A client that makes a listener and a subscription, and takes back what has not expired meanwhile.
    std::atomic<int> made{0};
    const auto client = [&](const std::string& name)
    {
        for (int round = 0; round < kRounds; ++round)
        {
            auto own = listener(name);
            own->Destination.set("http://new");
            made += CIM_ListenerDestinationCIMXML_Provider().create_instance(own.get()) == 0;
            auto request = subscription("CQL:Alert:All", name);
            made += CIM_IndicationSubscription_Provider().create_instance(request.get()) == 0;
            CIM_IndicationSubscription_Provider().delete_instance(request.get());
            CIM_ListenerDestinationCIMXML_Provider().delete_instance(own.get());
            clock.outlive();
        }
    };
    std::thread one(client, "one"), other(client, "other");
    std::thread delivery(
        [&]
        {
            while (changing)
                CIM_ListenerDestinationCIMXML_Provider::expire_listener_destination("http://new");
        });
    one.join();
    other.join();
    changing = false;
    delivery.join();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GT(made, 0);
    makeMapsStale();
    EXPECT_EQ(pairs(), (Texts{"a CQL:Alert:All", "b CQL:Alert:All", "a Create:FCPort"}));
}

} // namespace
} // namespace cimple
