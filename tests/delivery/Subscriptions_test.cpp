// The snapshot of subscriptions: who gets what, and when the switch is asked.
#include "delivery/Subscriptions.h"

#include "simulator/testing/SimSwitch.h"
#include "tests/support/Log_Capture.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <map>
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
        listener("one", "Permanent", "http://one/");
        listener("two", "Transient", "http://two/");
    }

    void listener(const std::string& name, const std::string& type, const std::string& destination)
    {
        sim.answer("Oper.Cim.Listener." + name + ".Type", type);
        sim.answer("Oper.Cim.Listener." + name + ".Destination", destination);
    }

    // The next subscription of the switch's list, with one or two listeners.
    void subscription(const std::string& filter,
                      const Texts& listeners,
                      const std::string& state = "True",
                      const std::string& duration = "0",
                      const std::string& start = "010100002026")
    {
        const std::string name = "s" + std::to_string(_last++);
        sim.answer(_link, name);
        _link = "Oper.Cim.NextSubscription." + name;
        sim.answer(_link, ""); // as good as the end status, and can be changed
        const std::string key = "Oper.Cim.Subscription." + name + ".";
        sim.answer(key + "FilterID", filter);
        sim.answer(key + "EnableState", state);
        sim.answer(key + "Duration", duration);
        sim.answer(key + "StartTime", start);
        std::string link = key + "FirstListener";
        for (const std::string& one : listeners)
        {
            sim.answer(link, one);
            link = key + "NextListener." + one;
        }
        sim.failKey(link, XPL_END_OF_WALK);
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

    simulator::SimSwitch sim{simulator::SimSwitch::make()};
    Subscriptions subscriptions{readClock};

  private:
    int _last = 0;
    std::string _link = "Oper.Cim.FirstSubscription";
};

TEST_F(SubscriptionsTest, GivesTheDestinationsOfEnabledSubscriptionsOnAFilter)
{
    subscription("CQL:Alert:All", {"one", "two"});
    subscription("CQL:Alert:All", {"two"}); // each destination once
    subscription("Alert:ZoningDBChange", {"two"}, "False");
    subscription("CQL:Alert:ZoningDBChange", {"one"}, "");
    subscription("CQL:Alert:SNIA:FC8", {"two"}, "True", "18446744073709551615");
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
    subscription("CQL:Alert:All", {"one"}, "True", "60", "010100002026");
    subscription("CQL:Alert:All", {"two"}, "True", "60", ""); // a start that the switch alone knows
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
    sim.answer("Oper.Cim.FirstSubscription", "");
    EXPECT_EQ(destinations(16), Texts());
    sim.mark();
    for (std::uint16_t filter = 0; filter < 30; ++filter)
        EXPECT_EQ(destinations(filter), Texts());
    EXPECT_EQ(sim.platformCalls(), 0u) << "events without a subscriber cost nothing";
    subscription("CQL:Alert:All", {"one"});
    EXPECT_EQ(destinations(16), Texts());
    subscriptions.changed();
    subscriptions.changed();
    EXPECT_EQ(destinations(16), Texts{"http://one/"});
    const std::size_t calls = sim.platformCalls();
    EXPECT_EQ(destinations(16), Texts{"http://one/"});
    EXPECT_EQ(sim.platformCalls(), calls);
    // A change that comes while the switch is read is not lost.
    subscription("CQL:Alert:All", {"two"});
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
    destinations(16);
    EXPECT_EQ(reads, 2 * once);
    destinations(16);
    EXPECT_EQ(reads, 2 * once);
}

TEST_F(SubscriptionsTest, KeepsWhatItReadWhenTheSwitchDoesNotAnswer)
{
    subscription("CQL:Alert:All", {"one", "two"});
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
        EXPECT_EQ(destinations(16).size(), 2u);
        EXPECT_EQ(sim.platformCalls(), 0u) << "read at last: " << key;
    }
}

TEST_F(SubscriptionsTest, LeavesOutWhatItDoesNotKnow)
{
    subscription("Alert:Nothing", {"one"});
    subscription("CQL:Alert:All", {"gone", "empty", "one"});
    subscription("CQL:Alert:SNIA:Core1", {"two"});
    sim.failKey("Oper.Cim.Listener.gone.Type", XPL_UNKNOWN_KEY);
    sim.failKey("Oper.Cim.Listener.gone.Destination", XPL_UNKNOWN_KEY);
    listener("empty", "Permanent", "");
    const Log_Capture log;
    EXPECT_EQ(destinations(16), Texts{"http://one/"});
    EXPECT_EQ(log.texts(),
              (Texts{"Subscription s0 is left out: there is no filter \"Alert:Nothing\"",
                     "Subscription s1 is left out: there is no listener \"gone\" with a destination",
                     "Subscription s1 is left out: there is no listener \"empty\" with a destination"}));
    EXPECT_EQ(destinations(17), Texts{"http://two/"});
}

TEST_F(SubscriptionsTest, KnowsWhichListenersAreTransient)
{
    listener("three", "Permanent", "http://two/");
    subscription("CQL:Alert:All", {"one", "two"});
    destinations(16);
    EXPECT_EQ(subscriptions.persistenceOf("http://one/"), Persistence::Permanent);
    EXPECT_EQ(subscriptions.persistenceOf("http://two/"), Persistence::Transient);
    EXPECT_EQ(subscriptions.persistenceOf("http://three/"), Persistence::Unknown);
    subscription("CQL:Alert:SNIA:Core1", {"three"});
    subscriptions.changed();
    destinations(16);
    EXPECT_EQ(subscriptions.persistenceOf("http://two/"), Persistence::Permanent) << "one of two";
}

} // namespace
} // namespace cimple
