// The snapshot of subscriptions: who gets what, and when the switch is asked.
#include "delivery/Subscriptions.h"

#include "simulator/testing/SimSwitch.h"
#include "tests/support/Log_Capture.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

constexpr std::int64_t kNow = 1767225600; // 2026-01-01 00:00:00 UTC

std::int64_t now = kNow;
std::int64_t readClock()
{
    return now;
}

class SubscriptionsTest : public testing::Test
{
  protected:
    SubscriptionsTest()
    {
        setenv("TZ", "UTC", 1);
        now = kNow;
    }

    // A permanent and a transient listener.
    static simulator::SimSwitchSetup setup()
    {
        return simulator::SimSwitch::make()
            .listener("one", "http://one/", true)
            .listener("two", "http://two/");
    }
    void begin(const simulator::SimSwitchSetup& with)
    {
        sim.open(with.scenario());
        subscriptions.changed();
    }

    Texts destinations(std::uint16_t filter)
    {
        Destinations list;
        subscriptions.append(filter, list);
        Texts texts;
        for (const String& one : list)
            texts.emplace_back(one.c_str());
        return texts;
    }

    simulator::SimSwitch sim{setup()};
    Subscriptions subscriptions{readClock};
};

TEST_F(SubscriptionsTest, GivesTheDestinationsOfEnabledSubscriptionsOnAFilter)
{
    begin(setup()
              .subscription("s1", "CQL:Alert:All", {"one", "two"})
              .subscription("s2", "CQL:Alert:All", {"two"}) // each destination once
              .subscription("s3", "Alert:ZoningDBChange", {"two"})
              .subscription("s4", "CQL:Alert:ZoningDBChange", {"one"})
              .subscription("s5", "CQL:Alert:SNIA:FC8", {"two"}));
    sim.answer("Oper.Cim.Subscription.s3.EnableState", "False");
    sim.answer("Oper.Cim.Subscription.s4.EnableState", "");
    sim.answer("Oper.Cim.Subscription.s5.Duration", "18446744073709551615");
    EXPECT_EQ(destinations(16), (Texts{"http://one/", "http://two/"}));
    EXPECT_EQ(destinations(12), Texts());
    EXPECT_EQ(destinations(13), Texts());
    EXPECT_EQ(destinations(29), Texts{"http://two/"});
    EXPECT_EQ(destinations(30), Texts()) << "no filter";
    Destinations both;
    subscriptions.append(29, both);
    subscriptions.append(16, both);
    ASSERT_EQ(both.size(), 2u) << "also over several filters";
    EXPECT_EQ(both[0], "http://two/");
}

TEST_F(SubscriptionsTest, EndsWithItsDuration)
{
    begin(setup().subscription("s1", "CQL:Alert:All", {"one"}).subscription("s2", "CQL:Alert:All", {"two"}));
    for (const std::string name : {"s1", "s2"})
        sim.answer("Oper.Cim.Subscription." + name + ".Duration", "60");
    sim.answer("Oper.Cim.Subscription.s1.StartTime", "010100002026");
    sim.answer("Oper.Cim.Subscription.s2.StartTime", ""); // a start that the switch alone knows
    EXPECT_EQ(destinations(16), (Texts{"http://one/", "http://two/"}));
    sim.mark();
    now = kNow + 59;
    EXPECT_EQ(destinations(16), (Texts{"http://one/", "http://two/"}));
    now = kNow + 60;
    EXPECT_EQ(destinations(16), Texts{"http://two/"});
    EXPECT_EQ(sim.platformCalls(), 0u);
}

TEST_F(SubscriptionsTest, AsksTheSwitchAfterAChangeOnly)
{
    begin(setup().subscription("s1", "CQL:Alert:All", {"one"}).subscription("s2", "CQL:Alert:All", {"two"}));
    sim.answer("Oper.Cim.FirstSubscription", "");
    EXPECT_EQ(destinations(16), Texts());
    sim.mark();
    for (std::uint16_t filter = 0; filter < 30; ++filter)
        EXPECT_EQ(destinations(filter), Texts());
    sim.answer("Oper.Cim.FirstSubscription", "s1");
    EXPECT_EQ(destinations(16), Texts());
    EXPECT_EQ(sim.platformCalls(), 0u) << "events without a subscriber cost nothing";
    subscriptions.changed();
    subscriptions.changed();
    EXPECT_EQ(destinations(16).size(), 2u);
    sim.mark();
    EXPECT_EQ(destinations(16).size(), 2u);
    EXPECT_EQ(sim.platformCalls(), 0u);
    // A change that comes while the switch is read is not lost.
    int reads = 0;
    sim.onCall("xpl_smlGetBatch",
               [&]
               {
                   if (reads++ == 0)
                       subscriptions.changed();
               });
    subscriptions.changed();
    destinations(16);
    const int once = reads;
    for (int event = 0; event < 2; ++event)
    {
        destinations(16);
        EXPECT_EQ(reads, 2 * once);
    }
}

TEST_F(SubscriptionsTest, KeepsWhatItReadWhenTheSwitchDoesNotAnswer)
{
    begin(setup().subscription("s0", "CQL:Alert:All", {"one", "two"}));
    EXPECT_EQ(destinations(16).size(), 2u);
    for (const char* key : {"Oper.Cim.FirstSubscription",
                            "Oper.Cim.NextSubscription.s0",
                            "Oper.Cim.Subscription.s0.FilterID",
                            "Oper.Cim.Subscription.s0.FirstListener",
                            "Oper.Cim.Subscription.s0.NextListener.one",
                            "Oper.Cim.Listener.two.Type",
                            "Oper.Cim.Listener.two.Destination"})
    {
        const Log_Capture log;
        subscriptions.changed();
        sim.failNext(key, 2);
        for (int event = 0; event < 2; ++event)
            EXPECT_EQ(destinations(16).size(), 2u) << key;
        EXPECT_EQ(log.take().size(), 1u) << "said once: " << key;
        EXPECT_EQ(destinations(16).size(), 2u);
        sim.mark();
        destinations(16);
        EXPECT_EQ(sim.platformCalls(), 0u) << "read at last: " << key;
    }
}

TEST_F(SubscriptionsTest, LeavesOutWhatItDoesNotKnow)
{
    begin(setup()
              .listener("empty", "")
              .listener("gone", "http://gone/")
              .subscription("s0", "Alert:Nothing", {"one"})
              .subscription("s1", "CQL:Alert:All", {"gone", "empty", "one"})
              .subscription("s2", "CQL:Alert:SNIA:Core1", {"two"})
              .subscription("s3", "CQL:Alert:SNIA:Core1", {"one"})
              .subscription("s4", "CQL:Alert:SNIA:Core2", {"one", "two"}));
    sim.failKey("Oper.Cim.Listener.gone.Type", XPL_UNKNOWN_KEY);
    sim.failKey("Oper.Cim.Listener.gone.Destination", XPL_UNKNOWN_KEY);
    sim.answer("Oper.Cim.Listener.empty.Destination", "");
    // Subscriptions that go while they are read.
    sim.failKey("Oper.Cim.Subscription.s3.FilterID", XPL_UNKNOWN_KEY);
    sim.failKey("Oper.Cim.Subscription.s4.NextListener.one", XPL_UNKNOWN_KEY);
    const Log_Capture log;
    EXPECT_EQ(destinations(16), Texts{"http://one/"});
    EXPECT_EQ(log.texts(),
              (Texts{"Subscription s0 is left out: there is no filter \"Alert:Nothing\"",
                     "Subscription s1 is left out: there is no listener \"empty\" with a destination",
                     "Subscription s1 is left out: there is no listener \"gone\" with a destination"}));
    EXPECT_EQ(destinations(17), Texts{"http://two/"});
    EXPECT_EQ(destinations(18), Texts{"http://one/"});
}

TEST_F(SubscriptionsTest, KnowsWhichListenersAreTransient)
{
    simulator::SimSwitchSetup with = setup().subscription("s1", "CQL:Alert:All", {"one", "two"});
    begin(with);
    destinations(16);
    EXPECT_EQ(subscriptions.persistenceOf("http://one/"), Persistence::Permanent);
    EXPECT_EQ(subscriptions.persistenceOf("http://two/"), Persistence::Transient);
    EXPECT_EQ(subscriptions.persistenceOf("http://three/"), Persistence::Unknown);
    begin(with.listener("z", "http://two/", true).subscription("s2", "CQL:Alert:SNIA:Core1", {"z"}));
    destinations(16);
    EXPECT_EQ(subscriptions.persistenceOf("http://two/"), Persistence::Permanent) << "one of two";
}

} // namespace
} // namespace cimple
