// Delivery as a whole: from the switch's subscriptions to a listener.
#include "delivery/delivery.h"

#include "simulator/testing/SimSwitch.h"
#include "tests/delivery/Test_Listener.h"
#include "tests/delivery/test_indications.h"
#include "tests/support/Log_Capture.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace cimple
{
namespace
{

void subscribe(simulator::SimSwitch& sim, const std::string& destination)
{
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, std::string>>{
             {"Oper.Cim.FirstSubscription", "s"},
             {"Oper.Cim.Subscription.s.FilterID", "CQL:Alert:All"},
             {"Oper.Cim.Subscription.s.EnableState", "True"},
             {"Oper.Cim.Subscription.s.Duration", "0"},
             {"Oper.Cim.Subscription.s.StartTime", "010100002026"},
             {"Oper.Cim.Subscription.s.FirstListener", "l"},
             {"Oper.Cim.Listener.l.Type", "Transient"},
             {"Oper.Cim.Listener.l.Destination", destination}})
        sim.answer(key, value);
    sim.failKey("Oper.Cim.NextSubscription.s", XPL_END_OF_WALK);
    sim.failKey("Oper.Cim.Subscription.s.NextListener.l", XPL_END_OF_WALK);
    subscriptionsChanged();
}

void raise(const std::string& text)
{
    Destinations list;
    filterToDestinations(16, list);
    sendIndication(alert(text).ptr(), list);
}

TEST(DeliveryTest, StartsAndStopsAnyNumberOfTimes)
{
    simulator::SimSwitch sim{simulator::SimSwitch::make()};
    Test_Listener listener;
    subscribe(sim, listener.url());
    const Log_Capture log;
    startDelivery(nullptr);
    stopDelivery();
    stopDelivery();
    for (std::size_t round = 1; round <= 2; ++round)
    {
        raise("nobody sends this");
        raise("nor this");
        startDelivery(nullptr);
        startDelivery(nullptr);
        raise("round");
        listener.waitFor(round);
        stopDelivery();
        stopDelivery();
    }
    EXPECT_EQ(listener.requests().size(), 2u);
    EXPECT_EQ(log.texts(), (std::vector<std::string>(2, "Indications are lost: their delivery does not run")))
        << "once each time that it does not run";
    startDelivery(nullptr);
    sendIndication(nullptr, {listener.url().c_str()});
    stopDelivery();
    EXPECT_EQ(listener.requests().size(), 2u);
}

TEST(DeliveryTest, StopsAndStartsWhileEventsFlow)
{
    simulator::SimSwitch sim{simulator::SimSwitch::make()};
    Test_Listener listener;
    subscribe(sim, listener.url());
    const Log_Capture log;
    std::atomic<bool> over{false};
    std::thread events(
        [&]
        {
            while (!over)
                raise("event");
        });
    std::thread changes(
        [&]
        {
            while (!over)
                subscriptionsChanged();
        });
    for (int round = 0; round < 5; ++round)
    {
        const std::size_t before = listener.requests().size();
        startDelivery(nullptr);
        listener.waitFor(before + 1);
        stopDelivery();
    }
    over = true;
    events.join();
    changes.join();
}

} // namespace
} // namespace cimple
