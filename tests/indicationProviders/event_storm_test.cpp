// A storm of events on the switch, while clients subscribe, unsubscribe and read, and the indications end and
// begin anew: whoever is subscribed is told everything, in order, and nobody else is told anything.
#include "common/indications.h"

#include "delivery/delivery.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "tests/delivery/Test_Listener.h"
#include "tests/indicationProviders/Subscription_Test.h"

#include "CIM_AlertIndication.h"

#include <atomic>
#include <mutex>
#include <regex>
#include <thread>

namespace cimple
{
namespace
{

typedef CIM_ListenerDestinationCIMXML_Provider Listeners;
typedef CIM_IndicationSubscription_Provider Subscriptions;

// Of each thread. All alerts together find room in a list of waiting events.
constexpr int kRounds = 40;
constexpr int kRefusals = 300;

constexpr char kNobody[] = "http://127.0.0.1:1";

// How many refused logins of users "word-0", "word-1" ... were told; -1: out of order, or one is missing.
int told(const Test_Listener& listener, const std::string& word)
{
    const std::regex refused("<VALUE>Switch [^<]* the user " + word + "-([0-9]+) ");
    int count = 0;
    std::smatch match;
    for (const Test_Listener::Request& request : listener.requests())
        if (std::regex_search(request.body, match, refused) && std::stoi(match[1]) != count++)
            return -1;
    return count;
}

class Event_Storm : public Subscription_Test
{
  protected:
    // What a thread does again and again, told the number of the round.
    template <class WORK>
    void begin(WORK work)
    {
        const auto repeat = [work]
        {
            for (int round = 0; round < kRounds; ++round)
                work(round);
        };
        writers.emplace_back(repeat);
    }

    // The indications do not end before it has come, which could lose it.
    void refuseAndWait(const std::string& user, const Test_Listener& hears)
    {
        const std::lock_guard<std::mutex> lock(running);
        sim.refuseLogin(user);
        hears.waitFor(user + " ");
    }

    // The client is told of what happens while it is subscribed, and not of what happens afterwards.
    void comeAndGo(const std::string& name, const char* filter, int round, const Test_Listener& hears)
    {
        auto own = listener(name);
        own->Destination.set(hears.url().c_str());
        auto request = subscription(filter, name);
        EXPECT_EQ(Listeners().create_instance(own.get()), 0);
        EXPECT_EQ(Subscriptions().create_instance(request.get()), 0);
        refuseAndWait(name + "-here-" + std::to_string(round), hears);
        EXPECT_EQ(Subscriptions().delete_instance(request.get()), 0);
        EXPECT_EQ(Listeners().delete_instance(own.get()), 0);
        refuseAndWait(name + "-late-" + std::to_string(round), steady);
    }

    // Its listener expires at any moment.
    void comeAndExpire()
    {
        auto own = listener("brief");
        own->Destination.set(kNobody);
        Listeners().create_instance(own.get());
        Subscriptions().create_instance(subscription("CQL:Alert:All", "brief").get());
        Listeners().delete_instance(own.get());
    }

    void readAll()
    {
        EXPECT_EQ(serve<CIM_IndicationFilter_Provider>().count, 30u);
        for (const std::string& pair : pairs())
            EXPECT_TRUE(pair == "failed" || pair.find(' ') + 1 < pair.size()) << pair;
        serve<VRAX_FCPort_Provider>();
        serve<VRAX_ZoneSet_Provider>();
        Listeners::expire_listener_destination(kNobody);
        Destinations list;
        filterToDestinations(16, list);
        sendIndication(makeNull<CIM_AlertIndication>().get(), list);
        clock.outlive();
    }

    Test_Listener everything, one, other;
    Test_Listener steady; // subscribed all the time
    std::mutex running;   // held by who needs that the indications do
    std::vector<std::thread> writers;
    std::atomic<bool> over{false};
};

TEST_F(Event_Storm, ReachesWhoeverIsSubscribed)
{
    const Log_Capture log;
    Subscription_Test::begin(simulator::SimSwitch::make()
                                 .supplies(1)
                                 .zoning(simulator::ZoningSetup().zone("z", {"010100"}).zoneSet("s", {"z"}))
                                 .listener("all", everything.url())
                                 .listener("steady", steady.url(), true)
                                 .subscription("s1", "CQL:Alert:SNIA:Core9", {"steady"})
                                 .subscription("s2", "CQL:Alert:All", {"all"})
                                 .subscription("s3", "Create:FCPort", {"all"})
                                 .subscription("s4", "Delete:ComputerSystem", {"all"})
                                 .subscription("s5", "Modify:FCPort", {"all"}));
    sim.recordKeys(false);
    const auto added = simulator::SimSwitch::make().remote(4, 2).scenario().switches.back();
    simulator::NodeScenario node;
    node.domain = node.port = 1;
    node.portWwn = "210002a5c0de0ccc";
    ASSERT_TRUE(startIndications());
    begin([&](int) { sim.portDown(2), sim.portUp(2), sim.failPort(3), sim.failPort(3, false); });
    begin([&](int) { sim.addNode(node), sim.removeNode(node.portWwn); });
    begin([&](int) { sim.addSwitch(added), sim.removeSwitch(4); });
    begin([&](int) { sim.failSupply(1), sim.addUser("eva"), sim.insertSupply(1), sim.removeUser("eva"); });
    begin([&](int round) { sim.addZone("z" + std::to_string(round)), sim.activateZoneSet("s"); });
    begin([&](int round) { comeAndGo("one", "CQL:Alert:SNIA:Core9", round, one); });
    begin([&](int round) { comeAndGo("other", "CQL:Alert:All", round, other); });
    begin([&](int) { comeAndExpire(); });
    const auto readUntilItIsOver = [&]
    {
        while (!over)
            readAll();
    };
    std::thread reader(readUntilItIsOver), secondReader(readUntilItIsOver);
    for (int number = 0; number < kRefusals; ++number)
    {
        const std::string user = "steady-" + std::to_string(number);
        if (number % 60 != 59)
        {
            sim.refuseLogin(user);
            continue;
        }
        refuseAndWait(user, steady);
        const std::lock_guard<std::mutex> lock(running);
        stopIndications();
        EXPECT_TRUE(startIndications());
    }
    for (std::thread& writer : writers)
        writer.join();
    over = true;
    reader.join();
    secondReader.join();
    stopIndications();

    EXPECT_EQ(told(steady, "steady"), kRefusals);
    EXPECT_EQ(told(one, "one-here"), kRounds);
    EXPECT_EQ(told(one, "one-late"), 0);
    EXPECT_EQ(told(other, "other-here"), kRounds);
    EXPECT_EQ(told(other, "other-late"), 0);
    makeMapsStale();
    EXPECT_EQ(pairs().size(), 5u) << "the others are gone";
}

} // namespace
} // namespace cimple
