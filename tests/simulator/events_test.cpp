// Tests of the switch's events: what raises which, and how they reach their receiver.
#include "simulator/model/SwitchEvent.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

using namespace simulator;
using namespace std::chrono_literals;

namespace
{

// Switches by letter, A to D, and their ports by number: "port=A3".
std::string brief(std::string text)
{
    const std::pair<const char*, const char*> switches[] = {
        {"02a5c0de0001", "A"}, {"02a5c0de1002", "B"}, {"02a5c0de1003", "C"}, {"02a5c0de1004", "D"}};
    for (const auto& [digits, letter] : switches)
    {
        for (std::size_t at = text.find(digits); at != std::string::npos; at = text.find(digits))
        {
            const bool isPort = text[at - 4] == '2';
            text.replace(at - 4, 16, letter + (isPort ? std::string(1, text[at - 1]) : std::string()));
        }
    }
    return text;
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

struct Row
{
    const char* what;
    std::function<void(SimSwitch&)> happens;
    Texts events;
    Texts log = {}; // what it writes there, where that is not tested elsewhere
};

const Row kPorts[] = {
    {"a link is lost",
     [](SimSwitch& sim) { sim.portDown(1); },
     {"port status fabric=A switch=A port=A1 status=10 was=2"}},
    {"a link that is there comes", [](SimSwitch& sim) { sim.portUp(1); }, {}},
    {"a port fails, then its link is lost as well",
     [](SimSwitch& sim)
     {
         sim.failPort(1);
         sim.portDown(1);
     },
     {"port status fabric=A switch=A port=A1 status=6 was=2"}},
    {"a port is tested",
     [](SimSwitch& sim)
     { sim.changePort(1, [](PortScenario& port) { port.adminState = AdminState::diagnostics; }); },
     {"port status fabric=A switch=A port=A1 status=11 was=2"}},
    {"a port with a node goes",
     [](SimSwitch& sim) { sim.portDown(0); },
     {"port status fabric=A switch=A port=A0 status=10 was=2", "node logged out switch=A port=A0"}},
    {"nodes come and go",
     [](SimSwitch& sim)
     {
         sim.addNode(nodeAt(1, 0));
         sim.removeNode("210002A5C0DE0AAA");
         sim.removeNode("210002A5C0DE0BBB");
     },
     {"node logged in switch=A port=A0",
      "node logged out switch=A port=A0",
      "node logged out switch=B port=B1"}},
    {"a node on a port that is off",
     [](SimSwitch& sim)
     {
         sim.portDown(1);
         sim.mark();
         sim.addNode(nodeAt(1, 1));
     },
     {}},
};

const Row kFabric[] = {
    {"the link between two switches is lost and comes back",
     [](SimSwitch& sim)
     {
         sim.portDown(3);
         sim.portUp(3);
     },
     {"port status fabric=A switch=A port=A3 status=10 was=2",
      "port status fabric=A switch=B port=B0 status=10 was=2",
      "fabric topology fabric=A switch=A subject=segmented",
      "port status fabric=A switch=A port=A3 status=2 was=10",
      "port status fabric=A switch=B port=B0 status=2 was=10",
      "fabric topology fabric=A switch=A subject=merged"},
     {"port][port 3 Offline", "fabric][segmented", "port][port 3 Online", "fabric][merged"}},
    {"a link is lost between switches that have another way",
     [](SimSwitch& sim)
     {
         sim.removeNode("210002a5c0de0bbb");
         sim.addSwitch(switchD());
         sim.addIsl({1, 2, 4, 0, false});
         sim.mark();
         sim.addIsl({2, 1, 4, 1, false});
         sim.portDown(3);
     },
     {"port status fabric=A switch=A port=A3 status=10 was=2",
      "port status fabric=A switch=B port=B0 status=10 was=2"}},
    {"a switch that was on its own is linked, and isolated",
     [](SimSwitch& sim)
     {
         sim.addIsl({3, 0, 1, 1, false});
         sim.addIsl({3, 1, 1, 2, true});
     },
     {"fabric topology fabric=A switch=A subject=merged",
      "port status fabric=A switch=C port=C1 status=6 was=2",
      "port status fabric=A switch=A port=A2 status=6 was=2"}},
    {"a switch comes",
     [](SimSwitch& sim) { sim.addSwitch(switchD()); },
     {"switch added fabric=A switch=D", "port created switch=D port=D0", "port created switch=D port=D1"},
     {"fabric][switch 4 added"}},
    {"a switch goes that others were linked over, the principal one",
     [](SimSwitch& sim)
     {
         sim.removeNode("210002a5c0de0bbb");
         sim.addIsl({2, 1, 3, 0, false});
         sim.addNode(nodeAt(3, 1));
         sim.setPrincipal(2);
         sim.mark();
         sim.removeSwitch(2);
     },
     {"port deleted switch=B port=B0",
      "port deleted switch=B port=B1",
      "switch removed fabric=B switch=B",
      "principal changed fabric=A switch=A",
      "fabric topology fabric=A switch=A subject=segmented"},
     {"fabric][merged",
      "fabric][principal switch B",
      "fabric][switch 2 removed",
      "fabric][principal switch A",
      "fabric][segmented"}},
    {"a switch goes with its node",
     [](SimSwitch& sim) { sim.removeSwitch(2); },
     {"port deleted switch=B port=B0",
      "node logged out switch=B port=B1",
      "port deleted switch=B port=B1",
      "switch removed fabric=A switch=B"}},
    {"the fabric loses its name and finds another",
     [](SimSwitch& sim)
     {
         sim.setPrincipal(0);
         sim.setPrincipal(2);
         sim.setPrincipal(1);
         sim.setPrincipal(1);
     },
     {"fabric removed fabric=A switch=A",
      "fabric added fabric=B switch=A",
      "principal changed fabric=A switch=A"}},
    {"another switch is switched off",
     [](SimSwitch& sim) { sim.setSwitchState(2, AdminState::offline); },
     {"switch status fabric=A switch=B status=10 was=2",
      "port status fabric=A switch=B port=B0 status=10 was=2",
      "port status fabric=A switch=A port=A3 status=10 was=2",
      "fabric topology fabric=A switch=A subject=segmented",
      "port status fabric=A switch=B port=B1 status=10 was=2",
      "node logged out switch=B port=B1"},
     {"fabric][switch 2 Offline", "port][port 3 Offline", "fabric][segmented"}},
    {"our switch is configured to be tested, and its record written again",
     [](SimSwitch& sim)
     {
         for (int port = 0; port < 4; ++port)
             sim.changePort(port, [](PortScenario& facts) { facts.adminState = AdminState::diagnostics; });
         sim.mark();
         xpl_swSwitchConfig record = switchRecord();
         record.adminState = XPL_ADMIN_DIAGNOSTICS;
         xpl_swSwitchSetConfig(hSwitch, &record);
         xpl_swSwitchSetConfig(hSwitch, &record);
     },
     {"switch status fabric=A switch=A status=11 was=2"}},
    {"our switch has faults",
     [](SimSwitch& sim)
     {
         for (const std::vector<std::uint16_t>& faults :
              std::vector<std::vector<std::uint16_t>>{{32768}, {32768, 32769}, {32769}, {}})
             sim.changeSwitch([&faults](SwitchScenario& facts) { facts.faults = faults; });
     },
     {"switch status fabric=A switch=A status=2,5,32768 was=2",
      "switch status fabric=A switch=A status=2,32768,32769 was=2,5,32768",
      "switch status fabric=A switch=A status=6,32769 was=2,32768,32769",
      "switch status fabric=A switch=A status=2 was=6,32769"},
     {"switch][switch Online with faults",
      "switch][switch Online with faults",
      "switch][switch Online with faults",
      "switch][switch Online"}},
    {"zoning is changed by several",
     [](SimSwitch& sim)
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
     },
     {"zoning changed switch=A",
      "zoning changed switch=A",
      "zoning changed switch=A",
      "zone set activated fabric=A switch=A subject=s",
      "zone set activated fabric=A switch=A subject=s"}},
};

// Everything that can become of a part, starting with one that works.
template <class Set>
std::function<void(SimSwitch&)> lifeOf(Set set)
{
    return [set](SimSwitch& sim)
    {
        for (const PartState state : {PartState::warning,
                                      PartState::failed,
                                      PartState::failed,
                                      PartState::normal,
                                      PartState::notInstalled,
                                      PartState::normal})
            set(sim, state);
    };
}

void setSupply(SimSwitch& sim, PartState state)
{
    constexpr void (SimSwitch::*kVerbs[])(int) = {
        &SimSwitch::insertSupply, &SimSwitch::warnSupply, &SimSwitch::failSupply, &SimSwitch::pullSupply};
    const auto verb = kVerbs[static_cast<int>(state)];
    (sim.*verb)(2);
}

const Row kHardware[] = {
    {"a supply",
     lifeOf(setSupply),
     {"power supply failed switch=A location=power supply 2",
      "power supply added switch=A location=power supply 2",
      "power supply removed switch=A location=power supply 2",
      "power supply added switch=A location=power supply 2"}},
    {"a fan",
     lifeOf([](SimSwitch& sim, PartState state) { sim.setFan(2, state); }),
     {"fan failed switch=A location=fan 2",
      "fan added switch=A location=fan 2",
      "fan removed switch=A location=fan 2",
      "fan added switch=A location=fan 2"},
     {"chassis][fan 2 Warning",
      "chassis][fan 2 Failed",
      "chassis][fan 2 Failed",
      "chassis][fan 2 Normal",
      "chassis][fan 2 NotInstalled",
      "chassis][fan 2 Normal"}},
    {"a control processor",
     lifeOf([](SimSwitch& sim, PartState state) { sim.setCpu(1, state); }),
     {"CPU failed switch=A location=CPU 1",
      "CPU added switch=A location=CPU 1",
      "CPU removed switch=A location=CPU 1",
      "CPU added switch=A location=CPU 1"}},
    {"a blade, on which are ports 0 and 1",
     [](SimSwitch& sim)
     {
         sim.portDown(0);
         sim.failBlade(1);
         sim.pullBlade(1);
         sim.insertBlade(1);
         sim.switchBlade(1, AdminState::offline);
     },
     {"port status fabric=A switch=A port=A0 status=10 was=2",
      "node logged out switch=A port=A0",
      "blade status switch=A location=blade 1 status=6 was=2",
      "port status fabric=A switch=A port=A0 status=6 was=10",
      "port status fabric=A switch=A port=A1 status=6 was=2",
      "blade removed switch=A location=blade 1",
      "port status fabric=A switch=A port=A0 status=10 was=6",
      "port status fabric=A switch=A port=A1 status=10 was=6",
      "blade added switch=A location=blade 1",
      "port status fabric=A switch=A port=A1 status=2 was=10",
      "blade status switch=A location=blade 1 status=10 was=2",
      "port status fabric=A switch=A port=A1 status=10 was=2"}},
    {"sensors",
     [](SimSwitch& sim)
     {
         sim.pinTemperature(1, 45.5);
         sim.pinTemperature(1, 46);
         sim.pinTemperature(1, 71.5);
         sim.breakSensor(SensorKind::temperature, 1);
         sim.releaseSensor(SensorKind::temperature, 1);
         sim.pinVoltage(1, 10.8);
     },
     {"environment switch=A subject=Temperature value=45.50 C location=Intake",
      "environment switch=A subject=Temperature value=71.50 C location=Intake",
      "environment switch=A subject=Temperature value=no reading location=Intake",
      "environment switch=A subject=Voltage value=10.800 V location=voltage sensor 1"},
     {"chassis][temperature sensor 1 Warning: 45.50 C",
      "chassis][temperature sensor 1 Critical: 71.50 C",
      "chassis][temperature sensor 1 Unknown: no reading",
      "chassis][temperature sensor 1 Normal: 2",
      "chassis][voltage sensor 1 Critical: 10.800 V"}},
    {"users",
     [](SimSwitch& sim)
     {
         sim.addUser("eva");
         sim.changePassword("eva");
         sim.refuseLogin("mallory");
         sim.removeUser("admin");
     },
     {"user added switch=A subject=eva",
      "password changed switch=A subject=eva",
      "login failed switch=A subject=mallory",
      "user removed switch=A subject=admin"},
     {"user][user eva added",
      "user][password of user eva changed",
      "user][login of user mallory refused",
      "user][user admin removed"}},
};

// The entries that the switch wrote to its user log, without number, time and brackets.
Texts logOf(const SimSwitch& sim)
{
    Texts entries;
    const Scenario scenario = sim.scenario();
    for (const std::string& entry : scenario.switches.front().userLog)
    {
        const std::size_t time = entry.find("][");
        entries.push_back(brief(entry.substr(entry.find("][", time + 2) + 2)));
    }
    return entries;
}

void expectRow(const Row& row)
{
    SCOPED_TRACE(row.what);
    SimSwitch sim(fabric());
    EXPECT_EQ(Texts(), sim.events()) << "what a scenario brings about is no event";
    row.happens(sim);
    Texts events;
    for (const std::string& text : sim.events())
        events.push_back(brief(text));
    EXPECT_EQ(row.events, events);
    const Texts log = logOf(sim);
    if (row.log.empty())
        return;
    ASSERT_EQ(row.log.size(), log.size()) << testing::PrintToString(log);
    for (std::size_t i = 0; i < log.size(); ++i)
        EXPECT_EQ(0u, log[i].find(row.log[i])) << log[i];
}

TEST(Events, OfPortsAndNodes)
{
    for (const Row& row : kPorts)
        expectRow(row);
}

TEST(Events, OfTheFabric)
{
    for (const Row& row : kFabric)
        expectRow(row);
}

TEST(Events, OfHardwareAndUsers)
{
    for (const Row& row : kHardware)
        expectRow(row);
}

TEST(Events, TimeBringsSensorsToTheirThresholds)
{
    SimSwitch sim(fabric());
    sim.setFan(1, PartState::failed);
    sim.failSupply(1);
    sim.failSupply(2);
    sim.mark();
    EXPECT_EQ(Texts(), sim.events()) << "it warms in its own time";
    sim.advance(10min);
    ASSERT_EQ(1u, sim.events().size());
    EXPECT_EQ(0u, sim.events()[0].find("environment switch=100002a5c0de0001 subject=Temperature value=5"));
    EXPECT_NE(std::string::npos, sim.events()[0].find(" C location=Hot place"));
}

TEST(Events, FactsThatCannotBeAreRefused)
{
    SimSwitch sim(fabric());
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[&] { sim.setFan(3, PartState::failed); }, "the local switch has no fan 3"},
        {[&] { sim.setCpu(0, PartState::failed); }, "the local switch has no CPU 0"},
        {[&]
         {
             sim.setFan(1, PartState::notInstalled);
             sim.setFan(1, PartState::warning);
         },
         "fan 1 is not there"},
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

SwitchEvent copyOf(const xpl_SwitchEvent& view)
{
    SwitchEvent event;
    event.type = static_cast<xpl_SwitchEventType>(view.type);
    event.switchWwn = view.switchWwn;
    event.fabricWwn = view.fabricWwn;
    event.portWwn = view.portWwn;
    event.subject = view.subject;
    event.value = view.value;
    event.location = view.location;
    event.status.assign(view.status, view.status + view.statusCount);
    event.previousStatus.assign(view.previousStatus, view.previousStatus + view.previousStatusCount);
    event.isLocal = view.isLocal;
    return event;
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
    for (const Row& row : kHardware)
        row.happens(sim);
    sim.portUp(0);
    sim.removeSwitch(2);
    for (int i = 0; i < 200; ++i)
        i % 2 == 0 ? sim.portDown(1) : sim.portUp(1);
    const Texts raised = sim.events();
    EXPECT_EQ(raised, receiver.first(raised.size()));
    EXPECT_EQ(1u, sim.calls("xpl_swReceiveEvents"));
    sim.failNext("xpl_swReceiveEvents");
    xpl_swReceiveEvents([](const xpl_SwitchEvent*, void*) {}, nullptr);
    sim.portUp(1);
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
            const auto ignore = [](const xpl_SwitchEvent*, void*) {};
            while (!stop)
                xpl_swReceiveEvents(ignore, nullptr);
        });
    const auto flipsOf = [](const Texts& texts, const std::string& port)
    {
        std::string before;
        for (const std::string& text : texts)
        {
            if (text.find("port status") != 0 || text.find(port) == std::string::npos)
                continue;
            EXPECT_NE(before, text) << "one is missing or out of order";
            before = text;
        }
    };
    for (int i = 0; i < 50; ++i)
    {
        // What the receiver points to is gone with it; another thread takes its place now and then.
        Receiver receiver;
        std::this_thread::sleep_for(1ms);
        const Texts texts = receiver.soFar();
        flipsOf(texts, "port=200002a5c0de0001");
        flipsOf(texts, "port=200102a5c0de0001");
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
    const auto exitWhileEventsFlow = []
    {
        static SimSwitch sim(fabric());
        xpl_swReceiveEvents([](const xpl_SwitchEvent*, void*) {}, nullptr);
        sim.portDown(1);
        std::exit(0);
    };
    EXPECT_EXIT(exitWhileEventsFlow(), testing::ExitedWithCode(0), "");
    const auto exitFromReceiver = []
    {
        static SimSwitch sim(fabric());
        xpl_swReceiveEvents([](const xpl_SwitchEvent*, void*) { std::exit(0); }, nullptr);
        sim.portDown(1);
        std::this_thread::sleep_for(1h);
    };
    EXPECT_EXIT(exitFromReceiver(), testing::ExitedWithCode(0), "");
    const auto endFromReceiver = []
    {
        SimSwitch sim(fabric());
        xpl_swReceiveEvents([](const xpl_SwitchEvent*, void*) { xpl_swReceiveEvents(nullptr, nullptr); },
                            nullptr);
        sim.portDown(1);
        std::this_thread::sleep_for(1h);
    };
    EXPECT_DEATH(endFromReceiver(), "xpl_swReceiveEvents called from within a receiver");
}

} // namespace
