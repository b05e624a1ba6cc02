// What clients and the delivery change of listeners and subscriptions: commands, results, and what goes
// wrong.
#include "tests/indicationProviders/Subscription_Test.h"

#include <atomic>
#include <ctime>
#include <regex>
#include <thread>

namespace cimple
{

namespace
{
std::atomic<std::size_t> told{0};
}

// In place of the delivery's.
void subscriptionsChanged()
{
    ++told;
}

namespace
{

typedef CIM_ListenerDestinationCIMXML_Provider Listeners;
typedef CIM_IndicationSubscription_Provider Subscriptions;

const std::string kNewName = "Auto_#";

class Changes : public Subscription_Test
{
  protected:
    Changes() { told = 0; }

    void begin(const simulator::SimSwitchSetup& setup = subscribed())
    {
        Subscription_Test::begin(setup);
        told = 0;
    }

    // The commands since begin(), without what they have in common, and made-up names and times. The delivery
    // was told of each batch.
    Texts commands() const
    {
        EXPECT_EQ(told, sim.calls("xpl_smlBatchCimSet"));
        Texts all;
        for (const std::string& write : sim.writes())
        {
            std::string text = std::regex_replace(write, std::regex("Auto_[0-9]+"), kNewName);
            text = std::regex_replace(
                text, std::regex("StartTime\\.[0-9]{4}[A-Z][a-z]{2}[0-9]{6}$"), "StartTime.#");
            all.push_back(text.substr(std::string("Cmd.Cim.").size()));
        }
        return all;
    }
    static std::string line(const std::string& source, const std::string& function, const std::string& text)
    {
        return "Exception[CRIT]:indicationProviders/" + source + "_Provider:" + function + "[] " + text;
    }
};

int makeListener(const char* name)
{
    auto request = makeNull<CIM_ListenerDestinationCIMXML>();
    request->CreationClassName.set("CIM_ListenerDestinationCIMXML");
    request->Name.set(name);
    request->Destination.set("http://n");
    return Listeners().create_instance(request.get());
}

// --- What goes wrong

struct Fault
{
    std::string what;   // fails: a call, a key, the beginning of keys, or an insertion; nothing when empty
    std::int32_t code;  // with which status
    int skip;           // after so many times
    int status;         // of the operation
    Texts logged;       // after "indicationProviders/CIM_"
    std::size_t writes; // the number of commands that the switch saw
};

class Operations_That_Fail : public Changes
{
  protected:
    providerEnum_t map = Listeners::kIndex; // of the class; stale afterwards whatever happened

    void expect(const std::vector<Fault>& faults, const std::function<int()>& act)
    {
        for (const Fault& fault : faults)
        {
            const std::string& what = fault.what;
            SCOPED_TRACE(what + " " + std::to_string(fault.code));
            begin();
            EXPECT_EQ(pairs().size(), 3u); // everything is fresh
            std::optional<Insert_Failures> insertion;
            if (what.compare(0, 4, "CIM_") == 0)
                insertion.emplace(what.c_str());
            else if (what.compare(0, 5, "load ") == 0)
            {
                VRAX_Maps::getInstance()->InstMapForceUnload(map);
                sim.failNext(what.substr(5));
            }
            else if (!what.empty())
                sim.failNext(what, 1, fault.code, fault.skip);
            sim.mark();
            const Log_Capture log(kLogInfo);
            EXPECT_EQ(act(), fault.status);
            insertion.reset();
            sim.restore();
            Texts expected;
            for (const std::string& text : fault.logged)
            {
                const std::string kind = text.find("does not exist") != text.npos ? "INFO" : "CRIT";
                expected.push_back("Exception[" + kind + "]:indicationProviders/CIM_" + text);
            }
            EXPECT_EQ(log.texts(), expected);
            EXPECT_EQ(commands().size(), fault.writes);
            EXPECT_FALSE(VRAX_Maps::getInstance()->InstMapIsFresh(map));
        }
    }
};

const std::string kListenerClass = "CIM_ListenerDestinationCIMXML";
const std::string kListener = "ListenerDestinationCIMXML_Provider:";
const std::string kSubscription = "IndicationSubscription_Provider:";

TEST_F(Operations_That_Fail, SayWhyAndLeaveTheMapStale)
{
    const std::string create = kListener + "create_instance[] ", remove = kListener + "delete_instance[] ";
    const std::string noListeners = kListener + "load[] Unable to get FirstListener";
    const std::string notLoaded = "Unable to load CIM_ListenerDestinationCIMXML";
    const std::string notMade = create + "Unable to create listener";
    const std::string notRemoved = remove + "Unable to create listener";
    const std::string firstListener = "load Oper.Cim.FirstListener";
    auto other = listener("n");
    other->CreationClassName.set("CIM_ListenerDestination");
    map = Listeners::kIndex;
    expect({{"get_Local_Switch_World_Wide_Name", 5, 0, 84, {create + "Unable to retrieve localWWN"}, 0},
            {firstListener, 5, 0, 84, {noListeners, create + notLoaded}, 0},
            {"xpl_smlBatchCimSet", 5, 0, 84, {notMade}, 0},
            {"Cmd.Cim.Listener.n.Create", 235, 0, 80, {create + "Listener already exists"}, 3},
            {"Cmd.Cim.Listener.n.Create", 77, 0, 84, {notMade}, 3},
            {"Cmd.Cim.Listener.n.Destination.", 9, 0, 84, {notMade}, 4}, // it is taken back
            {kListenerClass, 0, 0, 84, {create + "Failed to insert instance in map"}, 3}},
           [] { return makeListener("n"); });
    expect({{"", 0, 0, 80, {create + "Listener already exists"}, 0}}, [] { return makeListener("a"); });
    expect({{"",
             0,
             0,
             82,
             {create + "Cannot create Instance CreationClassName not equal to " + kListenerClass},
             0}},
           [&] { return Listeners().create_instance(other.get()); });
    expect({{firstListener, 5, 0, 93, {noListeners, remove + notLoaded}, 0},
            {"xpl_smlBatchCimSet", 5, 0, 93, {notRemoved}, 0},
            {"Cmd.Cim.Listener.a.Delete", 5, 0, 93, {notRemoved}, 1}},
           [] { return Listeners().delete_instance(listener("a").get()); });
    expect({{"", 0, 0, 90, {remove + "Listener to be deleted does not exist"}, 0}},
           [] { return Listeners().delete_instance(listener("A").get()); });

    const std::string subscribe = kSubscription + "create_instance[] ";
    const std::string failed = subscribe + "xpl_smlBatchCimSet failed";
    const std::string noMap = subscribe + "Failed to insert into CIM_IndicationSubscription_map";
    const std::string invalid = subscribe + "Instance provided is not valid";
    const std::string command = "Cmd.Cim.Subscription.";
    map = Subscriptions::kIndex;
    expect({{"xpl_smlBatchCimSet", 5, 0, 84, {failed}, 0},
            {command, 237, 0, 84, {subscribe + "Subscription Name already exists"}, 6},
            {command, 77, 0, 84, {subscribe + "Invalid Subscription name"}, 6},
            {command, 9, 0, 84, {failed}, 6},
            {command, 9, 1, 84, {failed}, 7}, // the filter: it is taken back
            {"Cmd.Cim.Listener.b.", 9, 0, 84, {failed}, 6},
            {"CIM_IndicationSubscription", 0, 0, 84, {noMap}, 6}},
           [] { return Subscriptions().create_instance(subscription("Create:FCPort", "b").get()); });
    expect({{"", 0, 0, 84, {subscribe + "Subscription of this type already exists"}, 0}},
           [] { return Subscriptions().create_instance(subscription("Create:FCPort", "a").get()); });
    expect({{"", 0, 0, 82, {invalid}, 0}}, [] { return Subscriptions().create_instance(nullptr); });
    expect({{"", 0, 0, 82, {invalid}, 0}},
           [] { return Subscriptions().create_instance(makeNull<CIM_IndicationSubscription>().get()); });

    const std::string detach = kSubscription + "delete_instance[] ";
    const std::string notSet = detach + "xpl_smlBatchCimSet failed";
    const std::string noName = detach + "Failed to get subscription name";
    const std::string notRead = kSubscription + "load[] Unable to get first subscription info";
    const std::string noFilter = detach + "Failed to get filter\n";
    expect({{"Oper.Cim.Listener.a.FirstSub", 5, 0, 90, {noName}, 0},
            {"Oper.Cim.Subscription.s1.FilterID", 5, 0, 93, {noFilter}, 0},
            {"xpl_smlBatchCimSet", 5, 0, 90, {notSet}, 0},
            {"Cmd.Cim.Listener.", 5, 0, 90, {notSet}, 1},
            {"Oper.Cim.Listener.a.NextSub.s1", 5, 0, 90, {noName}, 1},
            // Those that the listener has are found.
            {"load Oper.Cim.NextSubscription.s1", 5, 0, 0, {notRead}, 1}},
           [] { return Subscriptions().delete_instance(subscription("CQL:Alert:All", "a").get()); });
    expect({{"", 0, 0, 90, {detach + "Instance not found"}, 0},
            {"load Oper.Cim.FirstSubscription", 5, 0, 93, {notRead}, 0}},
           [] { return Subscriptions().delete_instance(subscription("Create:FCPort", "b").get()); });
}

// --- What goes well

TEST_F(Changes, AListenerIsPublishedAsItsCreatorIsTold)
{
    const struct
    {
        const char* system; // its class; null: neither class nor name is given
        const char* className;
        int persistence; // 0: none is given
        const char* type;
    } rows[] = {
        {nullptr, "CIM_ListenerDestinationCIMXML", 3, "Transient"},
        {"CIM_ComputerSystem", "cim_listenerdestinationcimxml", 2, "Permanent"},
        {"VRAX_FCSwitch", "CIM_ListenerDestinationCIMXML", 0, "Transient"},
    };
    for (const auto& row : rows)
    {
        begin();
        auto request = makeNull<CIM_ListenerDestinationCIMXML>();
        request->CreationClassName.set(row.className);
        if (row.system != nullptr)
        {
            request->SystemCreationClassName.set(row.system);
            request->SystemName.set("host.example");
        }
        request->Name.set("pywbemdestination:me:1");
        request->Destination.set("https://[::1]:50000/a.b?c=%d");
        if (row.persistence != 0)
            request->PersistenceType.set(static_cast<uint16>(row.persistence));
        EXPECT_EQ(Listeners().create_instance(request.get()), 0);
        const std::string named = "Listener.pywbemdestination:me:1.";
        EXPECT_EQ(commands(),
                  (Texts{named + "Create",
                         named + "Type." + row.type,
                         named + "Destination.https://[::1]:50000/a.b?c=%d"}));
        CIM_ListenerDestinationCIMXML* found = nullptr;
        ASSERT_EQ(Listeners().get_instance(request.get(), found), 0);
        const Owned<CIM_ListenerDestinationCIMXML> owner(found);
        EXPECT_STREQ(found->CreationClassName.value.c_str(), "CIM_ListenerDestinationCIMXML");
        EXPECT_STREQ(found->Destination.value.c_str(), "https://[::1]:50000/a.b?c=%d");
        EXPECT_EQ(found->PersistenceType.value, row.persistence == 2 ? 2 : 3);
    }
}

TEST_F(Changes, ASubscriptionIsMadeOfSixCommands)
{
    const struct
    {
        std::optional<uint64> duration;
        int state; // 0: none is given
        const char* word;
        const char* seconds;
    } rows[] = {
        {{}, 0, "", "0"},
        {720000, 2, "True", "720000"},
        {720001, 3, "False", "720000"},
        {0x100000001, 4, "", "720000"},
    };
    for (const auto& row : rows)
    {
        begin();
        auto request = subscription("Create:FCPort", "b");
        request->Filter->SystemCreationClassName.set("CIM_ComputerSystem");
        request->Handler->SystemCreationClassName.set("CIM_ComputerSystem");
        request->Handler->SystemName.set("host.example");
        if (row.duration)
            request->SubscriptionDuration.set(*row.duration);
        if (row.state != 0)
            request->SubscriptionState.set(static_cast<uint16>(row.state));
        EXPECT_EQ(Subscriptions().create_instance(request.get()), 0);
        const std::string named = "Subscription." + kNewName + ".";
        EXPECT_EQ(commands(),
                  (Texts{named + "Create",
                         named + "FilterID.Create:FCPort",
                         named + "EnableState." + row.word,
                         named + "Duration." + row.seconds,
                         named + "StartTime.#",
                         "Listener.b.AddSubscription." + kNewName}));
        EXPECT_TRUE(key_eq(request.get(), subscription("Create:FCPort", "b").get()))
            << "told as it is published";
        EXPECT_EQ(request->SubscriptionDuration.value, std::stoull(row.seconds));
        EXPECT_EQ(pairs().size(), 4u);

        for (const bool fresh : {true, false})
        {
            if (!fresh)
                makeMapsStale();
            request->Handler->SystemName.set("host.example");
            EXPECT_EQ(Subscriptions().create_instance(request.get()), 84) << "there is one";
        }
        EXPECT_EQ(commands().size(), 6u);
    }
}

TEST_F(Changes, TimeRunsOut)
{
    begin();
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    char start[16];
    std::strftime(start, sizeof(start), "%m%d%H%M%Y", &fields); // the minute that has begun
    sim.answer("Oper.Cim.Subscription.s2.StartTime", start);
    sim.answer("Oper.Cim.Subscription.s2.Duration", "1000");
    CIM_IndicationSubscription* found = nullptr;
    ASSERT_EQ(Subscriptions().get_instance(subscription("Create:FCPort", "a").get(), found), 0);
    const Owned<CIM_IndicationSubscription> owner(found);
    EXPECT_GT(found->SubscriptionTimeRemaining.value, 900u);
    EXPECT_LE(found->SubscriptionTimeRemaining.value, 1000u);
}

TEST_F(Changes, ASubscriptionIsFoundByWhateverSystemItsEndsName)
{
    begin();
    auto request = subscription("CQL:Alert:All", "b");
    request->Filter->SystemCreationClassName.set("CIM_ComputerSystem");
    request->Handler->SystemName.set("host.example");
    CIM_IndicationSubscription* found = nullptr;
    ASSERT_EQ(Subscriptions().get_instance(request.get(), found), 0);
    EXPECT_TRUE(
        key_eq(Owned<CIM_IndicationSubscription>(found).get(), subscription("CQL:Alert:All", "b").get()));
    EXPECT_STREQ(request->Handler->SystemName.value.c_str(), "host.example") << "the request is the client's";

    // One of the switch's subscriptions has two listeners.
    EXPECT_EQ(Subscriptions().delete_instance(request.get()), 0);
    EXPECT_EQ(commands(), (Texts{"Listener.b.RemoveSubscription.s1"}));
    EXPECT_EQ(pairs(), (Texts{"a CQL:Alert:All", "a Create:FCPort"}));
    EXPECT_EQ(Subscriptions().delete_instance(request.get()), 90);
    EXPECT_EQ(Subscriptions().get_instance(request.get(), found), GET_INSTANCE_NOT_FOUND);

    sim.failNext("Oper.Cim.FirstListener");
    makeMapsStale();
    EXPECT_EQ(Subscriptions().get_instance(request.get(), found), 64);
}

// Somebody else has subscribed as well: the pair is there twice, and another one has an unknown filter.
TEST_F(Changes, WhatCannotBePublishedCanBeDeleted)
{
    begin(subscribed().subscription("s3", "CQL:Alert:All", {"a"}).subscription("s4", "Unknown", {"c"}));
    EXPECT_EQ(pairs(), (Texts{"failed"}));
    EXPECT_EQ(Subscriptions().delete_instance(subscription("Unknown", "c").get()), 0);
    EXPECT_EQ(pairs(), (Texts{"failed"}));
    EXPECT_EQ(Subscriptions().delete_instance(subscription("CQL:Alert:All", "a").get()), 0);
    EXPECT_EQ(commands(),
              (Texts{"Listener.c.RemoveSubscription.s4",
                     "Listener.a.RemoveSubscription.s1",
                     "Listener.a.RemoveSubscription.s3"}));
    EXPECT_EQ(pairs(), (Texts{"b CQL:Alert:All", "a Create:FCPort"}));
}

TEST_F(Changes, AnUnresponsiveTransientListenerExpires)
{
    begin();
    Listeners().unload();
    EXPECT_EQ(Listeners::expire_listener_destination("http://b"), 0u) << "nothing is loaded for this";
    EXPECT_EQ(listeners(), (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(Listeners::expire_listener_destination("http://B"), 0u);
    EXPECT_FALSE(VRAX_Maps::getInstance()->InstMapIsFresh(Listeners::kIndex));

    sim.failNext("Cmd.Cim.Listener.c.Delete");
    {
        const Log_Capture log(kLogInfo);
        EXPECT_EQ(Listeners::expire_listener_destination("http://b"), 1u);
        EXPECT_EQ(log.texts(),
                  (Texts{"Deleting unresponsive transient listener, Name=b, Destination=http://b",
                         line("CIM_ListenerDestinationCIMXML",
                              "expire_listener_destination",
                              "Unable to expire/delete listener")}));
    }
    EXPECT_FALSE(VRAX_Maps::getInstance()->InstMapIsFresh(Listeners::kIndex));
    EXPECT_EQ(listeners(), (Texts{"a", "c", "d"}));
    EXPECT_EQ(pairs(), (Texts{"a CQL:Alert:All", "a Create:FCPort"})) << "built anew with the listeners";
    EXPECT_EQ(Listeners::expire_listener_destination("http://b"), 1u);
    EXPECT_EQ(listeners(), (Texts{"a", "d"}));
}

// The delivery's thread must not wait for a load of the subscriptions.
TEST_F(Changes, ExpiryNeedsTheListenersMapAlone)
{
    begin();
    listeners();
    Association_Load_Lock loading;
    const Write_Guard<CIM_IndicationSubscription> subscriptions;
    const Write_Guard<CIM_IndicationFilter> filters;
    std::thread([] { EXPECT_EQ(Listeners::expire_listener_destination("http://b"), 2u); }).join();
}

} // namespace
} // namespace cimple
