// Tests of the switch's events: what raises which, and how they reach their receiver.
#include "simulator/model/SwitchEvent.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <regex>
#include <thread>

using namespace simulator;
using namespace std::chrono_literals;

namespace
{

// WWNs become letters, A to D for switches and "A3" for ports, and what comes in a fixed order has no label:
// "port status A A A3 10 was=2" is of fabric A and switch A.
std::string brief(std::string text)
{
    const std::pair<const char*, const char*> letters[] = {
        {"02a5c0de0001", "A"}, {"02a5c0de1002", "B"}, {"02a5c0de1003", "C"}, {"02a5c0de1004", "D"}};
    for (const auto& [digits, letter] : letters)
    {
        text = std::regex_replace(text, std::regex(std::string("1000") + digits), letter);
        text =
            std::regex_replace(text, std::regex(std::string("200(.)") + digits), letter + std::string("$1"));
    }
    return std::regex_replace(text, std::regex(" (fabric|switch|port|status)="), " ");
}

std::string brief(const Texts& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : "; ") + brief(text);
    return all;
}

// A switch with parts of every kind, linked with B; C is there and has no link.
SimSwitchSetup fabric()
{
    return SimSwitch::make()
        .blades(2, 2)
        .supplies(2)
        .fans(2)
        .cpus(1)
        .temperature("Intake", 25, 40, 50)
        .temperature("Hot place", 50)
        .voltage("", 12)
        .remote(2, 2)
        .remote(3, 2)
        .isl({1, 3, 2, 0, false})
        .node(1, 0, "210002a5c0de0aaa")
        .node(2, 1, "210002a5c0de0bbb")
        .uptimeSeconds(3600)
        .zoning(ZoningSetup().zone("z", {"010100"}).zoneSet("s", {"z"}));
}

NodeScenario nodeAt(int domain, int port)
{
    NodeScenario node;
    node.domain = domain;
    node.port = port;
    node.portWwn = "210002a5c0de0ccc";
    return node;
}

SwitchScenario switchD()
{
    return SimSwitch::make().remote(4, 2).scenario().switches.back();
}

void test(SimSwitch& sim, int port)
{
    sim.changePort(port, [](PortScenario& facts) { facts.adminState = AdminState::diagnostics; });
}

class Events : public testing::Test
{
  protected:
    // What has happened, and the switch's log of it where that is not tested elsewhere; then all begins
    // again.
    void expect(const std::string& events, const std::string& log = "")
    {
        EXPECT_EQ(events, brief(sim.events()));
        if (!log.empty())
            EXPECT_EQ(log, logged());
        sim.open(fabric().scenario());
        EXPECT_EQ(Texts(), sim.events()) << "what a scenario brings about is no event";
    }

    // Everything that can become of a part, starting with one that works.
    template <class Set>
    void expectLife(const std::string& part, const std::string& number, Set set)
    {
        std::string log;
        for (const auto& [state, name] : {std::pair(PartState::warning, "Warning"),
                                          std::pair(PartState::failed, "Failed"),
                                          std::pair(PartState::failed, "Failed"),
                                          std::pair(PartState::normal, "Normal"),
                                          std::pair(PartState::notInstalled, "NotInstalled"),
                                          std::pair(PartState::normal, "Normal")})
        {
            set(sim, state);
            log += (log.empty() ? "chassis][" : "; chassis][") + part + number + " " + name;
        }
        std::string events;
        for (const char* event : {" failed", " added", " removed", " added"})
            events += (events.empty() ? "" : "; ") + part + event + " A location=" + part + number;
        expect(events, log);
    }

    SimSwitch sim{fabric()};

  private:
    // The entries without number, time and brackets.
    std::string logged() const
    {
        std::string all;
        const Scenario scenario = sim.scenario();
        for (const std::string& entry : scenario.switches.front().userLog)
        {
            const std::size_t time = entry.find("][");
            const std::size_t text = entry.find("][", time + 2) + 2;
            all += (all.empty() ? "" : "; ") + brief(entry.substr(text, entry.size() - 1 - text));
        }
        return all;
    }
};

TEST_F(Events, OfNodesAndPorts)
{
    sim.addNode(nodeAt(1, 0));
    sim.removeNode("210002A5C0DE0AAA");
    sim.removeNode("210002A5C0DE0BBB");
    sim.portDown(0);
    expect("node logged in A A0; node logged out A A0; node logged out B B1; port status A A A0 10 was=2; "
           "node logged out A A0");
    sim.portUp(1); // it is
    sim.portDown(1);
    sim.addNode(nodeAt(1, 1)); // nobody sees it
    sim.failPort(2);
    sim.portDown(2); // after it failed
    test(sim, 0);
    expect("port status A A A1 10 was=2; port status A A A2 6 was=2; port status A A A0 11 was=2; "
           "node logged out A A0");
}

TEST_F(Events, OfLinksBetweenSwitches)
{
    sim.portDown(3);
    sim.portUp(3);
    expect("port status A A A3 10 was=2; port status A B B0 10 was=2; fabric topology A A subject=segmented; "
           "port status A A A3 2 was=10; port status A B B0 2 was=10; fabric topology A A subject=merged",
           "port][port 3 Offline; fabric][segmented; port][port 3 Online; fabric][merged");

    sim.removeNode("210002a5c0de0bbb");
    sim.addSwitch(switchD());
    sim.addIsl({1, 2, 4, 0, false});
    sim.mark();
    sim.addIsl({2, 1, 4, 1, false});
    sim.portDown(3); // there is another way
    expect("port status A A A3 10 was=2; port status A B B0 10 was=2");

    sim.addIsl({3, 0, 1, 1, false});
    sim.addIsl({3, 1, 1, 2, true});
    expect("fabric topology A A subject=merged; port status A C C1 6 was=2; port status A A A2 6 was=2");
}

TEST_F(Events, OfSwitchesThatComeAndGo)
{
    sim.addSwitch(switchD());
    expect("switch added A D; port created D D0; port created D D1", "fabric][switch 4 added");

    sim.removeSwitch(2);
    expect("port deleted B B0; node logged out B B1; port deleted B B1; switch removed A B");

    sim.removeNode("210002a5c0de0bbb");
    sim.addIsl({2, 1, 3, 0, false});
    sim.addNode(nodeAt(3, 1));
    sim.setPrincipal(2);
    sim.mark();
    sim.removeSwitch(2); // the principal one, over which another is linked
    expect(
        "port deleted B B0; port deleted B B1; switch removed B B; principal changed A A; "
        "fabric topology A A subject=segmented",
        "fabric][merged; fabric][principal switch B; fabric][switch 2 removed; fabric][principal switch A; "
        "fabric][segmented");

    for (const int domain : {0, 2, 1, 1})
        sim.setPrincipal(domain);
    expect("fabric removed A A; fabric added B A; principal changed A A");
}

TEST_F(Events, OfTheStatusOfSwitches)
{
    sim.setSwitchState(2, AdminState::offline);
    expect("switch status A B 10 was=2; port status A B B0 10 was=2; port status A A A3 10 was=2; "
           "fabric topology A A subject=segmented; port status A B B1 10 was=2; node logged out B B1",
           "fabric][switch 2 Offline; port][port 3 Offline; fabric][segmented");

    for (int port = 0; port < 4; ++port)
        test(sim, port);
    sim.mark();
    xpl_swSwitchConfig record = switchRecord();
    record.adminState = XPL_ADMIN_DIAGNOSTICS;
    xpl_swSwitchSetConfig(hSwitch, &record);
    xpl_swSwitchSetConfig(hSwitch, &record);
    expect("switch status A A 11 was=2");

    for (const std::vector<std::uint16_t>& faults :
         std::vector<std::vector<std::uint16_t>>{{32768}, {32768, 32769}, {32769}, {}})
        sim.changeSwitch([&faults](SwitchScenario& facts) { facts.faults = faults; });
    expect("switch status A A 2,5,32768 was=2; switch status A A 2,32768,32769 was=2,5,32768; "
           "switch status A A 6,32769 was=2,32768,32769; switch status A A 2 was=6,32769",
           "switch][switch Online with faults; switch][switch Online with faults; "
           "switch][switch Online with faults; switch][switch Online");
}

TEST_F(Events, OfZoningChangedBySeveral)
{
    xpl_fzsAddZoneAlias(hSwitch, "alias");
    xpl_fzsAddZoneAlias(hSwitch, "alias"); // refused
    getZoningEditMode();
    setKey("Cmd.Zoning.Zone.z.AddZoneMember.010200");
    saveZoningEdit();
    sim.addZone("other");
    xpl_fzsActivateZoneset(hSwitch, "s");
    sim.activateZoneSet("s");
    sim.deactivateZoneSet();
    expect("zoning changed A; zoning changed A; zoning changed A; zone set activated A A subject=s; "
           "zone set activated A A subject=s");
}

void setSupply(SimSwitch& sim, PartState state)
{
    constexpr void (SimSwitch::*kVerbs[])(int) = {
        &SimSwitch::insertSupply, &SimSwitch::warnSupply, &SimSwitch::failSupply, &SimSwitch::pullSupply};
    // In a variable of its own: GCC 12's bounds check of an index inside the call reads an index never
    // written.
    void (SimSwitch::*const verb)(int) = kVerbs[static_cast<int>(state)];
    (sim.*verb)(2);
}

TEST_F(Events, OfParts)
{
    expectLife("power supply", " 2", setSupply);
    expectLife("fan", " 2", [](SimSwitch& one, PartState state) { one.setFan(2, state); });
    expectLife("CPU", " 1", [](SimSwitch& one, PartState state) { one.setCpu(1, state); });

    sim.portDown(0);
    sim.failBlade(1); // with ports 0 and 1
    sim.pullBlade(1);
    sim.insertBlade(1);
    sim.switchBlade(1, AdminState::offline);
    expect(
        "port status A A A0 10 was=2; node logged out A A0; "
        "blade status A location=blade 1 6 was=2; port status A A A0 6 was=10; port status A A A1 6 was=2; "
        "blade removed A location=blade 1; port status A A A0 10 was=6; port status A A A1 10 was=6; "
        "blade added A location=blade 1; port status A A A1 2 was=10; "
        "blade status A location=blade 1 10 was=2; port status A A A1 10 was=2");
}

TEST_F(Events, OfSensors)
{
    sim.pinTemperature(1, 45.5);
    sim.pinTemperature(1, 46);
    sim.pinTemperature(1, 71.5);
    sim.breakSensor(SensorKind::temperature, 1);
    sim.pinTemperature(1, 27);
    sim.pinVoltage(1, 10.8);
    expect("environment A subject=Temperature value=45.50 C location=Intake; "
           "environment A subject=Temperature value=71.50 C location=Intake; "
           "environment A subject=Temperature value=no reading location=Intake; "
           "environment A subject=Voltage value=10.800 V location=voltage sensor 1",
           "chassis][temperature sensor 1 Warning: 45.50 C; chassis][temperature sensor 1 Critical: 71.50 C; "
           "chassis][temperature sensor 1 Unknown: no reading; "
           "chassis][temperature sensor 1 Normal: 27.00 C; chassis][voltage sensor 1 Critical: 10.800 V");

    sim.setFan(1, PartState::failed);
    sim.failSupply(1);
    sim.failSupply(2);
    sim.mark();
    EXPECT_EQ(Texts(), sim.events()) << "it warms in its own time";
    sim.advance(10min);
    const std::string events = brief(sim.events());
    const std::regex warm("environment A subject=Temperature value=5[^;]* C location=Hot place");
    EXPECT_TRUE(std::regex_match(events, warm)) << events;
}

TEST_F(Events, OfUsers)
{
    sim.addUser("eva");
    sim.changePassword("eva");
    sim.refuseLogin("mallory");
    sim.removeUser("admin");
    expect("user added A subject=eva; password changed A subject=eva; login failed A subject=mallory; "
           "user removed A subject=admin",
           "user][user eva added; user][password of user eva changed; user][login of user mallory refused; "
           "user][user admin removed");
}

TEST_F(Events, FactsThatCannotBeAreRefused)
{
    sim.setFan(1, PartState::notInstalled);
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[&] { sim.setFan(3, PartState::failed); }, "the local switch has no fan 3"},
        {[&] { sim.setCpu(0, PartState::failed); }, "the local switch has no CPU 0"},
        {[&] { sim.setFan(1, PartState::warning); }, "fan 1 is not there"},
        {[&] { sim.addUser("admin"); }, "expected a name that no other user has, got \"admin\""},
        {[&] { sim.removeUser("eva"); }, "the local switch has no user eva"},
        {[&] { sim.changePassword("eva"); }, "the local switch has no user eva"},
        {[&] { sim.setSwitchState(9, AdminState::online); }, "no switch with domain 9"},
        {[&] { sim.addZone("z"); }, "addZone z: the switch refuses with 161"},
    };
    for (const auto& [action, message] : rows)
        EXPECT_EQ(message, errorFrom(action));
}

// --- Delivery ---

void ignore(const xpl_SwitchEvent*, void*) {}

SwitchEvent copyOf(const xpl_SwitchEvent& view)
{
    return {static_cast<xpl_SwitchEventType>(view.type),
            view.fabricWwn,
            view.switchWwn,
            view.portWwn,
            view.subject,
            view.value,
            view.location,
            {view.status, view.status + view.statusCount},
            {view.previousStatus, view.previousStatus + view.previousStatusCount},
            view.isLocal};
}

// Receives events from its making to its end, and does not outlive that by an event.
class Receiver
{
  public:
    Receiver() { xpl_swReceiveEvents(receive, this); }
    ~Receiver() { xpl_swReceiveEvents(nullptr, nullptr); }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    // Waits until so many have come.
    Texts first(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [&] { return _texts.size() >= count; });
        return _texts;
    }
    Texts soFar() { return first(0); }

    // From here on each event waits until the hold is gone.
    std::unique_lock<std::mutex> hold() { return std::unique_lock<std::mutex>(_mutex); }

  private:
    static void receive(const xpl_SwitchEvent* event, void* context)
    {
        auto& self = *static_cast<Receiver*>(context);
        const std::lock_guard<std::mutex> lock(self._mutex);
        self._texts.push_back(textOf(copyOf(*event)));
        self._changed.notify_all();
    }

    std::mutex _mutex;
    std::condition_variable _changed;
    Texts _texts;
};

TEST(EventDelivery, GivesAllOfAnEventInOrder)
{
    SimSwitch sim(fabric());
    sim.portDown(0); // nobody receives: it is lost
    sim.mark();
    Receiver receiver;
    setSupply(sim, PartState::failed);
    sim.failBlade(1);
    sim.pinVoltage(1, 10.8);
    sim.addUser("eva");
    sim.setPrincipal(2);
    sim.removeSwitch(2);
    for (int i = 0; i < 200; ++i)
        i % 2 == 0 ? sim.portDown(2) : sim.portUp(2);
    const Texts raised = sim.events();
    EXPECT_GT(raised.size(), 200u);
    EXPECT_EQ(raised, receiver.first(raised.size()));
    EXPECT_EQ(1u, sim.calls("xpl_swReceiveEvents"));
    sim.failNext("xpl_swReceiveEvents");
    xpl_swReceiveEvents(ignore, nullptr);
    sim.portDown(2);
    EXPECT_EQ(raised.size() + 1, sim.events().size());
    EXPECT_EQ(raised, receiver.soFar()) << "a call that fails leaves no receiver";
}

TEST(EventDelivery, EndsAndChangesItsReceiverWhileEventsFlow)
{
    SimSwitch sim(fabric());
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (const int port : {0, 1})
        threads.emplace_back(
            [&sim, &stop, port]
            {
                for (bool up = false; !stop; up = !up)
                    up ? sim.portUp(port) : sim.portDown(port);
            });
    threads.emplace_back(
        [&stop]
        {
            while (!stop)
                xpl_swReceiveEvents(ignore, nullptr);
        });
    for (int i = 0; i < 50; ++i)
    {
        // What the receiver points to is gone with it; another thread takes its place now and then.
        Receiver receiver;
        std::this_thread::sleep_for(1ms);
        std::map<std::string, std::string> before; // by port
        for (const std::string& text : receiver.soFar())
        {
            if (text.find("port status") != 0)
                continue;
            std::string& former = before[text.substr(text.find("port="), 21)];
            EXPECT_NE(former, text) << "one is missing or out of order";
            former = text;
        }
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    xpl_swReceiveEvents(nullptr, nullptr);
}

TEST(EventDelivery, AReceiverThatDoesNotKeepUpLosesTheNewest)
{
    SimSwitch sim = SimSwitch::make();
    const SwitchScenario large = SimSwitch::make().remote(2, 4000).scenario().switches.back();
    Receiver receiver;
    testing::internal::CaptureStderr();
    {
        const auto held = receiver.hold();
        for (int i = 0; i < 4; ++i)
        {
            sim.addSwitch(large);
            sim.removeSwitch(2);
        }
    }
    EXPECT_EQ("simulated switch: events are lost: their receiver does not keep up\n",
              testing::internal::GetCapturedStderr());
    Texts raised = sim.events();
    ASSERT_GT(raised.size(), 20000u);
    const Texts received = receiver.first(16384);
    ASSERT_LE(received.size(), 16385u);
    raised.resize(received.size());
    EXPECT_EQ(raised, received);
}

// Each in a process of its own.
TEST(EventDeliveryDeathTest, EndsWithTheProcess)
{
    const auto deliverTo = [](xpl_SwitchEventReceiver receiver)
    {
        static SimSwitch sim(fabric());
        xpl_swReceiveEvents(receiver, nullptr);
        sim.portDown(1);
        if (receiver == ignore)
            std::exit(0); // while events flow
        std::this_thread::sleep_for(1h);
    };
    const auto exit = [](const xpl_SwitchEvent*, void*) { std::exit(0); };
    const auto end = [](const xpl_SwitchEvent*, void*) { xpl_swReceiveEvents(nullptr, nullptr); };
    EXPECT_EXIT(deliverTo(ignore), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(deliverTo(exit), testing::ExitedWithCode(0), "");
    EXPECT_DEATH(deliverTo(end), "xpl_swReceiveEvents called from within a receiver");
}

} // namespace
