// Tests of the listeners and subscriptions that the switch keeps for its CIM agent.
#include "platform/xpl_fzs.h"
#include "simulator/model/switch_time.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <ctime>
#include <sstream>

using namespace simulator;
using namespace std::chrono_literals;

namespace
{

typedef std::vector<std::string> Texts;

// The statuses of a batch of the agent's commands, without their "Cmd.Cim.".
std::vector<int> command(const Texts& keys)
{
    Texts whole;
    for (const std::string& key : keys)
        whole.push_back("Cmd.Cim." + key);
    auto entries = batchOf(whole);
    EXPECT_EQ(0, xpl_smlBatchCimSet(hSwitch, entries.data(), static_cast<std::uint32_t>(entries.size())));
    std::vector<int> statuses;
    for (const xpl_smlEntry& entry : entries)
    {
        EXPECT_STREQ("", entry.value) << entry.key;
        statuses.push_back(entry.status);
    }
    return statuses;
}

std::string cim(const std::string& key)
{
    return valueOf("Oper.Cim." + key);
}

// Names of a walk, each with its attributes and the names that are linked with it: "name attribute ...: name
// ...; ".
std::string walk(const std::string& kind, const Texts& attributes, const std::string& linked)
{
    std::string all;
    for (std::string name = cim("First" + kind); !name.empty() && name != "status 24";
         name = cim("Next" + kind + "." + name))
    {
        const std::string prefix = kind + "." + name + ".";
        all += name;
        for (const std::string& attribute : attributes)
            all += " " + cim(prefix + attribute);
        all += ":";
        for (std::string one = cim(prefix + "First" + linked); !one.empty() && one != "status 24";
             one = cim(prefix + "Next" + linked + "." + one))
            all += " " + one;
        all += "; ";
    }
    return all;
}

std::string listeners()
{
    return walk("Listener", {"Type", "Destination"}, "Sub");
}

std::string subscriptions()
{
    return walk("Subscription", {"FilterID", "EnableState", "Duration"}, "Listener");
}

TEST(CimSubscriptions, CommandsChangeWhatTheyAreFor)
{
    const std::string client = "pywbemdestination:mgr.example.com:1"; // with points, as clients make them
    const std::string both = "s f False 720000: l " + client + "; ";
    const struct
    {
        std::string command;
        std::string listeners; // afterwards; "=": as before
        std::string subscriptions;
    } rows[] = {
        {"Listener.l.Create", "l Transient :; ", ""},
        {"Listener.l.Type.Permanent", "l Permanent :; ", "="},
        {"Listener.l.Destination.http://h.x:5990/a.Create b",
         "l Permanent http://h.x:5990/a.Create b:; ",
         "="},
        {"Listener.l.Type.Transient", "l Transient http://h.x:5990/a.Create b:; ", "="},
        {"Listener.l.Destination.http://h", "l Transient http://h:; ", "="},
        {"Subscription.s.Create", "=", "s  True 0:; "},
        {"Subscription.s.FilterID.CQL:Alert:SNIA:FC1.x", "=", "s CQL:Alert:SNIA:FC1.x True 0:; "},
        {"Subscription.s.FilterID.f", "=", "s f True 0:; "},
        {"Subscription.s.EnableState.", "=", "s f True 0:; "},
        {"Subscription.s.EnableState.False", "=", "s f False 0:; "},
        {"Subscription.s.EnableState.", "=", "s f False 0:; "},
        {"Subscription.s.Duration.720000", "=", "s f False 720000:; "},
        {"Listener.l.AddSubscription.s", "l Transient http://h: s; ", "s f False 720000: l; "},
        {"Listener." + client + ".Create", "l Transient http://h: s; " + client + " Transient :; ", "="},
        {"Listener." + client + ".AddSubscription.s",
         "l Transient http://h: s; " + client + " Transient : s; ",
         both},
        {"Subscription.a.b.Create", "=", "a.b  True 0:; " + both},
        {"Listener.l.AddSubscription.a.b",
         "l Transient http://h: a.b s; " + client + " Transient : s; ",
         "a.b  True 0: l; " + both},
        {"Listener.l.Delete", client + " Transient : s; ", "s f False 720000: " + client + "; "},
        {"Listener." + client + ".RemoveSubscription.s", client + " Transient :; ", ""},
        {"Listener." + client + ".Delete", "", "="},
    };
    SimSwitch sim = SimSwitch::make();
    EXPECT_EQ("", cim("FirstListener") + cim("FirstSubscription"));
    const Texts changed = {"subscriptions changed switch=100002a5c0de0001"};
    std::string listenersNow;
    std::string subscriptionsNow;
    for (const auto& row : rows)
    {
        sim.mark();
        EXPECT_EQ(std::vector<int>{0}, command({row.command})) << row.command;
        EXPECT_EQ(changed, sim.events()) << row.command;
        listenersNow = row.listeners != "=" ? row.listeners : listenersNow;
        subscriptionsNow = row.subscriptions != "=" ? row.subscriptions : subscriptionsNow;
        EXPECT_EQ(listenersNow, listeners()) << row.command;
        EXPECT_EQ(subscriptionsNow, subscriptions()) << row.command;
    }
    sim.mark();
    sim.holdAdminMode("console");
    const Texts whole = {"Listener.l.Create", "Subscription.s.Create", "Listener.l.AddSubscription.s"};
    EXPECT_EQ((std::vector<int>{0, 0, 0}), command(whole)) << "the administrative mode is not needed";
    EXPECT_EQ(1u, sim.events().size()) << "one batch is one change";
}

TEST(CimSubscriptions, CommandsThatAreRefusedChangeNothing)
{
    const std::string tooLong(129, 'n');
    const std::pair<std::string, int> rows[] = {
        {"Listener.l.Create", XPL_LISTENER_EXISTS},
        {"Listener.l.Type.permanent", XPL_INVALID_PARAMETER},
        {"Listener.l.Type", XPL_UNKNOWN_KEY},
        {"Listener.l.Destination.", XPL_INVALID_PARAMETER},
        {"Listener.l.Destination.http://\xC3\xA6", XPL_INVALID_PARAMETER},
        {"Listener.m.Type.Permanent", XPL_UNKNOWN_KEY},
        {"Listener.m.Destination.http://h", XPL_UNKNOWN_KEY},
        {"Listener.m.Delete", XPL_UNKNOWN_KEY},
        {"Listener.l.Colour.red", XPL_UNKNOWN_KEY},
        {"Listener.l.FirstSub", XPL_UNKNOWN_KEY},
        {"Listener", XPL_UNKNOWN_KEY},
        {"Listener..Create", XPL_INVALID_NAME},
        {"Listener." + tooLong + ".Create", XPL_INVALID_NAME},
        {"Listener.a\tb.Create", XPL_INVALID_NAME},
        {"Listener.Type.Create", XPL_INVALID_NAME},
        {"Listener.a.NextSub.Create", XPL_UNKNOWN_KEY},
        {"Listener.a.Delete.Create", XPL_INVALID_NAME},
        {"Subscription.s.Create", XPL_SUBSCRIPTION_EXISTS},
        {"Subscription.s\x7F.Create", XPL_INVALID_NAME},
        {"Subscription.s.FilterID.", XPL_INVALID_PARAMETER},
        {"Subscription.s.FilterID." + tooLong, XPL_INVALID_PARAMETER},
        {"Subscription.s.EnableState.Yes", XPL_INVALID_PARAMETER},
        {"Subscription.s.Duration.-1", XPL_INVALID_PARAMETER},
        {"Subscription.s.Duration.1000000001", XPL_INVALID_PARAMETER},
        {"Subscription.s.Duration.18446744073709551616", XPL_INVALID_PARAMETER},
        {"Subscription.s.StartTime.noon", XPL_INVALID_PARAMETER},
        {"Subscription.t.FilterID.f", XPL_UNKNOWN_KEY},
        {"Listener.m.AddSubscription.s", XPL_UNKNOWN_KEY},
        {"Listener.l.AddSubscription.t", XPL_UNKNOWN_KEY},
        {"Listener.k.RemoveSubscription.s", XPL_UNKNOWN_KEY},
        {"Listener.l.AddSubscription.s", 0}, // again
    };
    const SimSwitch sim =
        SimSwitch::make().listener("l", "http://h").listener("k", "http://k").subscription("s", "f", {"l"});
    const std::string before = listeners() + subscriptions();
    for (const auto& [name, status] : rows)
        EXPECT_EQ(std::vector<int>{status}, command({name})) << name;
    EXPECT_EQ(before, listeners() + subscriptions());
}

TEST(CimSubscriptions, WalksGoOnFromWhatIsGone)
{
    const SimSwitch sim = SimSwitch::make()
                              .listener("l1", "http://a")
                              .listener("l2", "http://b")
                              .subscription("s1", "f", {"l1", "l2"})
                              .subscription("s2", "f", {"l1"})
                              .subscription("s3", "f", {"l1"});
    EXPECT_EQ("s1", cim("Listener.l1.FirstSub"));
    command({"Listener.l1.RemoveSubscription.s1"}); // it stays with the other
    EXPECT_EQ("s2", cim("Listener.l1.NextSub.s1"));
    command({"Listener.l1.RemoveSubscription.s2"}); // it is gone
    EXPECT_EQ("s3", cim("Listener.l1.NextSub.s2"));
    EXPECT_EQ("s3", cim("NextSubscription.s2"));
    command({"Listener.l1.RemoveSubscription.s3"});
    EXPECT_EQ("status 24", cim("Listener.l1.NextSub.s3"));
    EXPECT_EQ("status 24", cim("Listener.l1.FirstSub"));
    EXPECT_EQ("l2", cim("Subscription.s1.NextListener.l1"));
    command({"Listener.l1.Delete"});
    EXPECT_EQ("l2", cim("NextListener.l1"));
    EXPECT_EQ("status 24", cim("NextListener.l2"));
    for (const char* unknown : {"Listener.l1.FirstSub",
                                "Listener.l2.Create",
                                "Listener.l2.Type.x",
                                "Listener.l2.NextSub",
                                "Listener.l2",
                                "Subscription.s3.FilterID",
                                "Subscription.s1.StartTime.x",
                                "Subscription.s1.NextListener"})
        EXPECT_EQ("status 2", cim(unknown)) << unknown;
}

TEST(CimSubscriptions, AreSoMany)
{
    const SimSwitch sim = SimSwitch::make();
    for (const auto& [kind, limit] : {std::make_pair("Listener.", 64), std::make_pair("Subscription.", 256)})
    {
        for (int i = 0; i < limit; ++i)
            ASSERT_EQ(std::vector<int>{0}, command({kind + std::to_string(i) + ".Create"}));
        EXPECT_EQ(std::vector<int>{XPL_FZS_LIMIT_REACHED}, command({std::string(kind) + "more.Create"}));
    }
    command({"Listener.7.Delete"});
    EXPECT_EQ(std::vector<int>{0}, command({"Listener.more.Create"}));
}

// Times of day as the tests' switch has them: whole minutes are far enough away.
std::string localText(const char* format, std::int64_t moment)
{
    const auto seconds = static_cast<std::time_t>(moment);
    std::tm fields{};
    localtime_r(&seconds, &fields);
    char text[40];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    return std::string(text, std::strftime(text, sizeof text, format, &fields));
#pragma GCC diagnostic pop
}

TEST(CimSubscriptions, TimesOfTheSwitch)
{
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const std::int64_t now = *momentOfIsoText("2026-11-14T20:35:42Z"); // 21:35:42 here
    const std::pair<const char*, const char*> rows[] = {
        {"111421352026", "2026-11-14T20:35:42Z"}, // seconds are open
        {"111421342026", "2026-11-14T20:34:59Z"},
        {"111421362026", "2026-11-14T20:36:00Z"},
        {"070400002026", "2026-07-03T22:00:59Z"},  // summer
        {"1114Nov352026", "2026-11-14T20:35:42Z"}, // and the hour
        {"1114Nov042026", "2026-11-14T21:04:00Z"},
        {"1114Nov062026", "2026-11-14T20:06:59Z"},
        {"1115Nov102026", "2026-11-14T23:10:00Z"},
        {"1113Nov102026", "2026-11-13T22:10:59Z"},
    };
    for (const auto& [text, moment] : rows)
        EXPECT_EQ(moment, isoText(momentOfSwitchText(text, now).value_or(0))) << text;
    const std::string refused =
        ",11142135202,1114213520266,131421352026,001421352026,113121352026,110021352026,"
        "111424352026,111421602026,1114Dec352026,1114nov352026,11x421352026,"
        "1114213520x6,-11421352026";
    std::stringstream texts(refused);
    for (std::string text; std::getline(texts, text, ',');)
        EXPECT_FALSE(momentOfSwitchText(text, now)) << text;
    EXPECT_EQ("111421352026", switchTimeText(now));
    for (const char* text : {"2026-11-14T20:35:42", "2026-02-30T20:35:42Z", "2026-11-14T20:35:42Zx", "now"})
        EXPECT_FALSE(momentOfIsoText(text)) << text;
    ::unsetenv("TZ");
    ::tzset();
}

TEST(CimSubscriptions, EndWithTheirTime)
{
    SimSwitch sim = SimSwitch::make().listener("l", "http://h");
    const auto subscribe = [](const std::string& name, const Texts& more)
    {
        Texts keys = {"Create", "FilterID.f", "EnableState.True"};
        keys.insert(keys.end(), more.begin(), more.end());
        for (std::string& key : keys)
            key = "Subscription." + name + "." + key;
        keys.push_back("Listener.l.AddSubscription." + name);
        EXPECT_EQ(std::vector<int>(keys.size()), command(keys));
    };
    const std::int64_t now = std::time(nullptr);
    subscribe("ever", {});
    subscribe("minute", {"Duration.60"});
    subscribe("nameless-hour", {"Duration.90", "StartTime." + localText("%m%d%h%M%C%y", now)});
    subscribe("hour", {"Duration.3720", "StartTime." + localText("%m%d%H%M%Y", now - 3600)});
    command({"Subscription.useless.Create", "Subscription.useless.Duration.1000"});
    EXPECT_NEAR(static_cast<double>(now),
                static_cast<double>(*momentOfSwitchText(cim("Subscription.minute.StartTime"), now)),
                60);
    EXPECT_EQ(12u, cim("Subscription.ever.EnableStateChange").size());
    const std::string ever = "ever f True 0: l; ";
    sim.mark();
    sim.advance(58s);
    EXPECT_EQ(0u, sim.events().size());
    EXPECT_EQ(5u, sim.subscriptions().size());
    sim.advance(3s);
    EXPECT_EQ(1u, sim.events().size());
    EXPECT_EQ(ever + "hour f True 3720: l; nameless-hour f True 90: l; ", subscriptions());
    sim.advance(30s);
    EXPECT_EQ(ever + "hour f True 3720: l; ", subscriptions());
    EXPECT_EQ("l Transient http://h: ever hour; ", listeners());
    sim.advance(32s + 59s);
    EXPECT_EQ(ever, subscriptions());
    EXPECT_EQ(3u, sim.events().size());
    sim.advance(240h);
    EXPECT_EQ(ever, subscriptions());
}

TEST(CimSubscriptions, AreSavedAndReadBack)
{
    SimSwitch sim = SimSwitch::make().listener("l.1", "http://h", true).listener("l2", "http://i");
    command({"Subscription.s.Create",
             "Subscription.s.FilterID.f",
             "Subscription.s.EnableState.True",
             "Subscription.s.Duration.100",
             "Listener.l2.AddSubscription.s",
             "Listener.l.1.AddSubscription.s"});
    const std::string once = formatScenario(sim.scenario());
    const std::string all = listeners() + subscriptions();
    EXPECT_EQ("l.1 Permanent http://h: s; l2 Transient http://i: s; s f True 100: l.1 l2; ", all);
    sim.open(parseScenario(once, "saved"));
    EXPECT_EQ(all, listeners() + subscriptions());
    EXPECT_EQ(once, formatScenario(sim.scenario()));
    EXPECT_EQ(std::vector<std::string>(), sim.events());

    // What ended while the switch was off is not there any more.
    Scenario late = parseScenario(once, "saved");
    late.switches[0].subscriptions[0].startTime = isoText(std::time(nullptr) - 101);
    sim.open(late);
    EXPECT_EQ("", subscriptions());

    const std::string badName =
        "/name: expected a name of 1 to 128 ASCII characters without a word of the keys, "
        "got ";
    typedef SwitchScenario S;
    const std::pair<std::function<void(S&)>, std::string> refused[] = {
        {[](S& one) { one.listeners[1].name = "l.1"; }, "listeners/1/name: \"l.1\" appears twice"},
        {[](S& one) { one.listeners[1].name = "a.Type.b"; }, "listeners/1" + badName + "\"a.Type.b\""},
        {[](S& one) { one.listeners[0].destination = "a\nb"; },
         "listeners/0/destination: the switch does not take \"a\nb\""},
        {[](S& one) { one.subscriptions[0].listeners[1] = "l3"; },
         "subscriptions/0/listeners/1: there is no \"l3\""},
        {[](S& one) { one.subscriptions[0].enableState = "Yes"; },
         "subscriptions/0/enableState: the switch does not take \"Yes\""},
        {[](S& one) { one.subscriptions[0].startTime = "noon"; },
         "subscriptions/0/startTime: expected a time such as \"2026-11-14T20:35:10Z\", got \"noon\""},
        {[](S& one) { one.listeners.resize(65); }, "listeners/2" + badName + "\"\""},
        {[](S& one) { one.users.push_back("admin"); }, "users/1: expected a name that no other user has"},
    };
    for (const auto& [change, message] : refused)
    {
        Scenario scenario = parseScenario(once, "saved");
        change(scenario.switches[0]);
        EXPECT_EQ("/switches/0/" + message, errorFrom([&] { validate(scenario); }));
    }
}

} // namespace
