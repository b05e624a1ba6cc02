// Tests of what can be done to the local switch and its ports: renaming them and changing their states.
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "serverProviders/VRAX_FCSwitchObjectManager_Provider.h"
#include "simulator/scenario/scenario_json.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/requests.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace cimple
{
namespace
{

using simulator::Scenario;

typedef std::vector<std::string> Texts;

const std::string kWwn = "100002a5c0de00ff"; // of the local switch
const std::string kRemoteWwn = "100002a5c0de1003";
const std::string kNodeWwn = "2100026E1A40B7D9";

Owned<VRAX_FCSwitch> switchNamed(const char* name)
{
    Owned<VRAX_FCSwitch> keys = makeNull<VRAX_FCSwitch>();
    keys->CreationClassName.set("VRAX_FCSwitch");
    keys->Name.set(name);
    return keys;
}
Owned<VRAX_FCPort>
portNamed(const std::string& system, const std::string& device, const char* systemClass = "VRAX_FCSwitch")
{
    Owned<VRAX_FCPort> keys = makeNull<VRAX_FCPort>();
    keys->SystemCreationClassName.set(systemClass);
    keys->SystemName.set(system.c_str());
    keys->CreationClassName.set("VRAX_FCPort");
    keys->DeviceID.set(device.c_str());
    return keys;
}
Owned<VRAX_FCSwitch> localSwitch()
{
    return switchNamed("100002A5C0DE00FF");
}
Owned<VRAX_FCPort> port2()
{
    return portNamed(kWwn, kWwn + ":200202a5c0de00ff");
}

// The status of a request that carries more than the name; null: it does not ask for a name.
template <class CLASS>
std::string rename(const Owned<CLASS>& keys, const char* name)
{
    const Owned<CLASS> instance(static_cast<CLASS*>(clone(keys.get())));
    instance->Description.set("not to be changed");
    instance->ElementName.set(name != nullptr ? name : "not asked for");
    const Owned<CLASS> model(static_cast<CLASS*>(clone(instance.get())));
    if (name == nullptr)
        model->ElementName.clear();
    return std::to_string(
        typename Registered<CLASS>::Provider().modify_instance(model.get(), instance.get()));
}

constexpr int kNoState = -1; // the request carries none

// Status and value of the method: "0 5".
template <class CLASS>
std::string request(const Owned<CLASS>& keys, int state)
{
    Property<uint16> requested;
    requested.clear();
    if (state != kNoState)
        requested.set(static_cast<uint16>(state));
    Property<Datetime> timeout;
    timeout.clear();
    Property<uint32> value;
    value.set(99);
    CIM_ConcreteJob* job = nullptr;
    const int status =
        typename Registered<CLASS>::Provider().RequestStateChange(keys.get(), requested, job, timeout, value);
    EXPECT_EQ(job, nullptr);
    return std::to_string(status) + " " + (value.null ? "null" : std::to_string(value.value));
}

// The local switch of four ports, which is the principal one of two, with a node attached.
class Operations : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make()
                     .wwn(kWwn)
                     .quiet()
                     .remote(3, 4)
                     .principal(1)
                     .node(1, 0, kNodeWwn)
                     .port(2, [](simulator::PortScenario& port) { port.name = "before"; })
                     .switchFacts([](simulator::SwitchScenario& facts) { facts.name = "before"; })
                     .scenario());
        instances<VRAX_FCSwitch_Provider>();
        instances<VRAX_FCPort_Provider>();
        sim.mark();
    }

    template <class CLASS>
    Description served(const Owned<CLASS>& keys)
    {
        CLASS* found = nullptr;
        EXPECT_EQ(typename Registered<CLASS>::Provider().get_instance(keys.get(), found), GET_INSTANCE_OK);
        const Owned<CLASS> owner(found);
        return found != nullptr ? described(*found) : Description();
    }

    // After changing the name in `scenario` to `name`, what the switch has and what is served are that.
    template <class CLASS>
    void expectRenamed(const Owned<CLASS>& keys, const std::string& name, const Scenario& scenario)
    {
        EXPECT_EQ(formatScenario(sim.scenario()), formatScenario(scenario)) << "nothing else is written";
        const std::size_t asked = sim.platformCalls();
        EXPECT_EQ(served(keys)["ElementName"], name) << "at once";
        EXPECT_EQ(sim.platformCalls(), asked);
        const Description cached = served(keys);
        clock.outlive();
        EXPECT_EQ(served(keys), cached) << "as the next load publishes it";
    }
};

TEST_F(Operations, ANameIsWrittenAndShowsAtOnce)
{
    const std::string n253(253, 'n');
    const std::pair<std::string, std::string> ofPorts[] = {
        {"after, and Longer", "after, and Longer"},
        {"", ""},
        {n253 + "nnn", n253 + "nn"}, // cut to what the record holds
        {std::string(1000, 'n'), n253 + "nn"},
        {n253 + "\xC3\xA9x", n253 + "\xC3\xA9"}, // characters are not cut in two
        {n253 + "\xE2\x82\xACx", n253},
    };
    for (const auto& [asked, written] : ofPorts)
    {
        Scenario scenario = sim.scenario();
        scenario.switches[0].ports[2].name = written;
        served(port2());
        EXPECT_EQ(rename(port2(), asked.c_str()), "0") << asked;
        expectRenamed(port2(), written, scenario);
    }
    for (const std::string& name : {std::string("after"), std::string(32, 'n'), std::string()})
    {
        Scenario scenario = sim.scenario();
        scenario.switches[0].name = name;
        served(localSwitch());
        EXPECT_EQ(rename(localSwitch(), name.c_str()), "0") << name;
        expectRenamed(localSwitch(), name, scenario);
    }
}

// A request may name the property and carry no value: the element has no name from then on.
TEST_F(Operations, ANullNameIsTheEmptyOne)
{
    const Owned<VRAX_FCPort> portModel = port2();
    portModel->ElementName.set("");
    EXPECT_EQ(VRAX_FCPort_Provider().modify_instance(portModel.get(), port2().get()), MODIFY_INSTANCE_OK);
    const Owned<VRAX_FCSwitch> switchModel = localSwitch();
    switchModel->ElementName.set("");
    EXPECT_EQ(VRAX_FCSwitch_Provider().modify_instance(switchModel.get(), localSwitch().get()),
              MODIFY_INSTANCE_OK);
    EXPECT_EQ(sim.writes(), (Texts{"port/2", "switch"}));
    for (int loads = 0; loads < 2; ++loads)
    {
        EXPECT_EQ(served(port2()).at("ElementName"), "");
        EXPECT_EQ(served(localSwitch()).at("ElementName"), "");
        clock.outlive();
    }
}

// Critical lines begin with "port." or "switch." and the operation.
std::string joined(const Texts& texts, const char* separator)
{
    std::string all;
    for (std::string text : texts)
    {
        const std::size_t operation = text.find("_Provider:"), end = text.find("[]");
        if (operation != text.npos)
        {
            text = std::string(text[0] == 'E' ? "exception of " : "") +
                   (text.find("FCPort_P") != text.npos ? "port." : "switch.") +
                   text.substr(operation + 10, end - operation - 10) + text.substr(end + 2);
        }
        all += (all.empty() ? "" : separator) + text;
    }
    return all;
}

// What becomes of the request on the element of those keys.
template <class CLASS>
std::string run(const Owned<CLASS>& keys, const std::string& request)
{
    std::string argument = request.substr(std::min(request.size(), request.find(' ') + 1));
    if (request.compare(0, 6, "state ") == 0)
        return cimple::request(keys, std::stoi(argument));
    if (const std::size_t times = argument.find('*'); times != argument.npos)
        argument = std::string(std::stoul(argument.substr(times + 1)), argument[0]);
    return rename(keys, request == "rename" ? nullptr : argument.c_str());
}

// Of a request without the system: it does not show that the port is not local.
std::string renameWithoutSystem(const Owned<VRAX_FCPort>& keys)
{
    keys->ElementName.set("after");
    const Owned<VRAX_FCPort> model(static_cast<VRAX_FCPort*>(clone(keys.get())));
    model->SystemName.clear();
    return std::to_string(VRAX_FCPort_Provider().modify_instance(model.get(), keys.get()));
}

std::string run(const std::string& element, const std::string& request)
{
    const std::size_t first = element.find(' ') + 1, second = element.find(' ', first) + 1;
    if (element.compare(0, 6, "switch") == 0)
        return run(switchNamed(element.substr(first).c_str()), request);
    const Owned<VRAX_FCPort> port = portNamed(element.substr(first, second - first - 1),
                                              element.substr(second),
                                              element[0] == 'n' ? "VRAX_Fabric" : "VRAX_FCSwitch");
    return request == "rename-keys a" ? renameWithoutSystem(port) : run(port, request);
}

TEST_F(Operations, DoAsTheTableSays)
{
    for (const Cells& row : readRequests(OPERATIONS, 6, kWwn))
    {
        SetUp();
        SCOPED_TRACE(row[0] + ", " + row[1] + ", " + row[2]);
        if (!row[2].empty())
            sim.failNext(row[2]);
        if (row[2] == "DataCache::dcRdLock")
            clock.outlive();
        const Log_Capture log;
        EXPECT_EQ(run(row[0], row[1]), row[3]);
        EXPECT_EQ(joined(log.texts(), "; "), row[4]);
        EXPECT_EQ(joined(sim.writes(), " "), row[5]);
        EXPECT_EQ(served(port2())["ElementName"], "before");
        EXPECT_EQ(served(localSwitch())["ElementName"], "before");
        EXPECT_EQ(sim.scenario().switches[0].name + sim.port(2).name, "beforebefore");
    }
}

// All states, what they do to the record, and what shows of them before and after the next load.
TEST_F(Operations, StatesThatCanBeRequested)
{
    using simulator::AdminState;
    struct State
    {
        int state;
        const char* ofPort;
        const char* ofSwitch;
        AdminState after;
        const char* published; // EnabledState
        const char* logged;    // of a port
    };
    const char* const kInvalid = "Invalid Requested State";
    const State states[] = {
        {3, "0 0", "0 0", AdminState::offline, "3", "Setting port Offline"},
        {7, "0 0", "0 0", AdminState::diagnostics, "7", "Setting port to Diagnostics"},
        {0, "0 5", "0 null", AdminState::diagnostics, "7", kInvalid},
        {kNoState, "0 5", "0 null", AdminState::diagnostics, "7", kInvalid},
        {1, "0 5", "0 null", AdminState::diagnostics, "7", kInvalid},
        {2, "0 0", "0 0", AdminState::online, "2", "Setting port Online"},
        {4, "0 5", "0 1", AdminState::online, "2", kInvalid},
        {5, "0 5", "0 null", AdminState::online, "2", kInvalid},
        {6, "0 5", "0 1", AdminState::online, "2", kInvalid},
        {8, "0 5", "0 1", AdminState::online, "2", kInvalid},
        {9, "0 5", "0 1", AdminState::online, "2", kInvalid},
        {10, "0 5", "0 1", AdminState::online, "2", kInvalid},
        {12, "0 5", "0 null", AdminState::online, "2", kInvalid},
        {65535, "0 5", "0 null", AdminState::online, "2", kInvalid},
    };
    for (const State& row : states)
    {
        const std::string before = served(port2())["EnabledState"];
        Scenario expected = sim.scenario();
        expected.switches[0].ports[2].adminState = row.after;
        const Log_Capture log(kLogInfo);
        EXPECT_EQ(request(port2(), row.state), row.ofPort) << row.state;
        const Texts lines = log.texts();
        EXPECT_EQ(lines.at(3), row.logged);
        EXPECT_EQ(formatScenario(sim.scenario()), formatScenario(expected)) << row.state;

        EXPECT_EQ(request(localSwitch(), row.state), row.ofSwitch) << row.state;
        EXPECT_EQ(log.texts().size(), std::strcmp(row.ofSwitch, "0 null") == 0 ? 1u : 2u) << row.state;
        EXPECT_EQ(sim.localSwitch().adminState, row.after) << row.state;
        EXPECT_EQ(sim.localSwitch().reserved, expected.switches[0].reserved) << row.state;

        EXPECT_EQ(served(port2())["EnabledState"], before) << "still fresh";
        clock.outlive();
        EXPECT_EQ(served(port2())["EnabledState"], row.published);
        EXPECT_EQ(served(localSwitch())["EnabledState"], row.published);
    }
}

TEST_F(Operations, KeepTheMapLockedWhileTheyTalkToTheSwitch)
{
    const auto callsUnderLock = [this](providerEnum_t map, const std::function<void()>& work)
    {
        Texts held;
        noteCallsUnderLock(map,
                           {"get_Local_Switch_World_Wide_Name",
                            "xpl_swPortGetConfig",
                            "xpl_swPortSetConfig",
                            "xpl_swSwitchGetConfig",
                            "xpl_swSwitchSetConfig",
                            "xpl_swSwitchForceReset"},
                           held);
        const Log_Capture log; // keeps the lines of the attempts off standard error
        work();
        return held;
    };
    EXPECT_EQ(
        callsUnderLock(VRAX_FCPort_Provider::kIndex, [] { rename(port2(), "after"), request(port2(), 3); }),
        (Texts{"get_Local_Switch_World_Wide_Name",
               "xpl_swPortGetConfig",
               "xpl_swPortSetConfig",
               "xpl_swPortGetConfig",
               "xpl_swPortSetConfig"}));
    EXPECT_EQ(callsUnderLock(
                  VRAX_FCSwitch_Provider::kIndex,
                  [] { rename(localSwitch(), "a"), request(localSwitch(), 3), request(localSwitch(), 11); }),
              (Texts{"get_Local_Switch_World_Wide_Name",
                     "xpl_swSwitchGetConfig",
                     "xpl_swSwitchSetConfig",
                     "xpl_swSwitchGetConfig",
                     "xpl_swSwitchSetConfig",
                     "xpl_swSwitchForceReset"}));
}

TEST_F(Operations, FaultsHaveCodes)
{
    const std::pair<const char*, unsigned> rows[] = {{"HW_MP_ACCESS_CPU0", 32769},
                                                     {"HW_MP_ACCESS_CPU1", 32769},
                                                     {"HW_MP_DATA_MISMATCH", 32769},
                                                     {"HW_MP_ACCESS", 32769},
                                                     {"FW_POST_FAIL", 32768},
                                                     {"hw_mp_access", 0},
                                                     {"HW_MP", 0},
                                                     {"", 0}};
    for (const auto& [name, code] : rows)
        EXPECT_EQ(VRAX_FCSwitch_Provider::findFault(name), code) << name;
}

// Readers, reloads, renames and state changes at the same time: every answer is whole and has one of the
// names.
TEST_F(Operations, LeaveEveryAnswerWhole)
{
    sim.recordKeys(false);
    const Log_Capture log; // keeps the lines of state changes off standard error
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i)
    {
        threads.emplace_back(
            [&, i]
            {
                for (int round = 0; round < 40; ++round)
                {
                    if (i == 0)
                        clock.outlive();
                    if (i == 1)
                        wrong += rename(localSwitch(), round % 2 == 0 ? "even" : "odd") != "0";
                    if (i == 2)
                        wrong += request(localSwitch(), round % 2 == 0 ? 3 : 2) != "0 0";
                    int named = 0;
                    const Served switches = serve<VRAX_FCSwitch_Provider>(
                        [&](const VRAX_FCSwitch& one)
                        {
                            const String& name = one.ElementName.value;
                            named += name == "even" || name == "odd" || name == "before";
                        });
                    wrong += switches.status != 0 || switches.count != 2 || named != 1;
                    wrong += serve<VRAX_FCSwitchObjectManager_Provider>().count != 1;
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace cimple
