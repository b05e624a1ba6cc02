// Tests of what can be done to a port: renaming it and changing its administrative state.
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "platform/switch_config.h"
#include "tests/common/testing/Switch_Test.h"

#include <cstring>
#include <functional>

namespace cimple
{
namespace
{

using simulator::PortScenario;
using simulator::SimSwitch;

const std::string kLocalWwn = "100002a5c0de00ff";
const std::string kRemoteWwn = "100002a5c0de1003";
const std::string kNodeWwn = "2100026E1A40B7D9";
const std::string kOrigin = "CRIT:fabricProviders/VRAX_FCPort_Provider:";

// The keys of a port.
struct Port_Keys
{
    std::string system;
    std::string device;
    std::string systemClass = "VRAX_FCSwitch";
};
const Port_Keys kPort2 = {kLocalWwn, kLocalWwn + ":200202a5c0de00ff"};
const Port_Keys kRemotePort2 = {kRemoteWwn, kRemoteWwn + ":200202a5c0de1003"};
const Port_Keys kNode = {"100002A5C0DE00FF", kNodeWwn, "VRAX_Fabric"};
const Port_Keys kNoPort = {kLocalWwn, kLocalWwn + ":20ff02a5c0de00ff"};
const Port_Keys kNoRemotePort = {kRemoteWwn, kRemoteWwn + ":20ff02a5c0de1003"};

// The local switch of four ports is the principal one of two; a node is attached to it.
class FCPortOperations : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(SimSwitch::make()
                     .wwn(kLocalWwn)
                     .remote(3, 4)
                     .principal(1)
                     .node(1, 0, kNodeWwn)
                     .port(2, [](PortScenario& port) { port.name = "before"; })
                     .scenario());
    }

    static Owned<VRAX_FCPort> port(const Port_Keys& keys)
    {
        Owned<VRAX_FCPort> result = makeNull<VRAX_FCPort>();
        result->SystemCreationClassName.set(keys.systemClass.c_str());
        result->SystemName.set(keys.system.c_str());
        result->CreationClassName.set("VRAX_FCPort");
        result->DeviceID.set(keys.device.c_str());
        return result;
    }

    // What the provider serves of a port.
    Description served(const Port_Keys& keys)
    {
        VRAX_FCPort* found = nullptr;
        EXPECT_EQ(VRAX_FCPort_Provider().get_instance(port(keys).get(), found), GET_INSTANCE_OK);
        const Owned<VRAX_FCPort> owner(found);
        return found != nullptr ? described(*found) : Description();
    }

    static Modify_Instance_Status rename(const Port_Keys& keys, const std::string& name)
    {
        const Owned<VRAX_FCPort> instance = port(keys);
        instance->ElementName.set(name.c_str());
        const Owned<VRAX_FCPort> model(static_cast<VRAX_FCPort*>(clone(instance.get())));
        return VRAX_FCPort_Provider().modify_instance(model.get(), instance.get());
    }

    // The value that the method returns.
    static uint32 request(const Port_Keys& keys, uint16 state)
    {
        const Owned<VRAX_FCPort> self = port(keys);
        Property<uint16> requested;
        requested.set(state);
        Property<Datetime> timeout;
        CIM_ConcreteJob* job = nullptr;
        Property<uint32> result;
        result.clear();
        EXPECT_EQ(VRAX_FCPort_Provider().RequestStateChange(self.get(), requested, job, timeout, result),
                  INVOKE_METHOD_OK);
        EXPECT_FALSE(result.null);
        EXPECT_EQ(job, nullptr);
        return result.value;
    }

    static xpl_swPortConfig record(std::int32_t number)
    {
        xpl_swPortConfig result{};
        EXPECT_EQ(xpl_swPortGetConfig(hSwitch, number, 0, &result), 0);
        return result;
    }

    std::size_t writes() const { return sim.calls("xpl_swPortSetConfig"); }
};

TEST_F(FCPortOperations, RenamesALocalPortAndNothingElse)
{
    Description expected = served(kPort2);
    ASSERT_EQ(expected["ElementName"], "before");
    xpl_swPortConfig before = record(2);
    const PortScenario other = sim.port(1);
    sim.mark();
    EXPECT_EQ(rename(kPort2, "after, and Longer"), MODIFY_INSTANCE_OK);
    EXPECT_EQ(writes(), 1u);

    EXPECT_EQ(sim.port(2).name, "after, and Longer");
    EXPECT_EQ(sim.port(1).name, other.name);
    const xpl_swPortConfig after = record(2);
    EXPECT_EQ(after.adminState, before.adminState);
    EXPECT_EQ(std::memcmp(after.reserved, before.reserved, sizeof(after.reserved)), 0);

    // The cached port has the new name at once, and everything else as it was.
    sim.mark();
    expected["ElementName"] = "after, and Longer";
    EXPECT_EQ(served(kPort2), expected);
    EXPECT_EQ(sim.platformCalls(), 0u);
    clock.outlive();
    EXPECT_EQ(served(kPort2), expected);
}

TEST_F(FCPortOperations, ChangesNoOtherPropertyThatComesWithTheName)
{
    Description expected = served(kPort2);
    const Owned<VRAX_FCPort> instance = port(kPort2);
    instance->ElementName.set("after");
    instance->Speed.set(1);
    instance->PortNumber.set(3);
    EXPECT_EQ(VRAX_FCPort_Provider().modify_instance(instance.get(), instance.get()), MODIFY_INSTANCE_OK);
    expected["ElementName"] = "after";
    EXPECT_EQ(served(kPort2), expected);
    EXPECT_EQ(sim.port(2).name, "after");
}

TEST_F(FCPortOperations, ANameIsCutToWhatTheRecordHolds)
{
    served(kPort2);
    for (const std::size_t length : {254u, 255u, 256u, 1000u})
    {
        const std::string name(length, 'n');
        EXPECT_EQ(rename(kPort2, name), MODIFY_INSTANCE_OK);
        EXPECT_EQ(sim.port(2).name, name.substr(0, 255));
        EXPECT_EQ(served(kPort2).at("ElementName"), name.substr(0, 255)) << "as the next load publishes it";
    }
    // Characters of two, three and four bytes of UTF-8 are not cut in two.
    for (const char* character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x94\x8C"})
    {
        const std::string whole(253, 'n');
        EXPECT_EQ(rename(kPort2, whole + character + "x"), MODIFY_INSTANCE_OK);
        EXPECT_EQ(sim.port(2).name, std::strlen(character) == 2 ? whole + character : whole);
    }
}

TEST_F(FCPortOperations, ANameThatIsNullEmptiesTheName)
{
    served(kPort2);
    const Owned<VRAX_FCPort> instance = port(kPort2);
    const Owned<VRAX_FCPort> model = port(kPort2);
    model->ElementName.set("");
    EXPECT_EQ(VRAX_FCPort_Provider().modify_instance(model.get(), instance.get()), MODIFY_INSTANCE_OK);
    EXPECT_EQ(record(2).symbolicName[0], '\0');
    for (int reads = 0; reads < 2; ++reads)
    {
        EXPECT_EQ(served(kPort2).at("ElementName"), "");
        clock.outlive();
    }
}

TEST_F(FCPortOperations, RequestsBeingAnsweredKeepThePortAsItWas)
{
    VRAX_FCPort* held = nullptr;
    serve<VRAX_FCPort_Provider>(
        [&](const VRAX_FCPort& one)
        {
            if (one.DeviceID.value == kPort2.device.c_str())
            {
                ref(&one);
                held = const_cast<VRAX_FCPort*>(&one);
            }
        });
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(rename(kPort2, "after"), MODIFY_INSTANCE_OK);
    EXPECT_EQ(held->ElementName.value, "before");
    EXPECT_EQ(served(kPort2)["ElementName"], "after");
    unref(held);
}

TEST_F(FCPortOperations, RefusedRenamesWriteNothing)
{
    served(kPort2);
    struct Row
    {
        const char* what;
        Port_Keys keys;
        std::function<void(SimSwitch&)> prepare;
        int status;
        std::string logged;
    };
    const auto nothing = [](SimSwitch&) {};
    const std::string failed = kOrigin + "modify_instance[] ";
    Port_Keys otherCase = kPort2;
    otherCase.system = "100002A5C0DE00FF";
    const Row rows[] = {
        {"a port of another switch", kRemotePort2, nothing, 102, ""},
        {"an unknown port of another switch", kNoRemotePort, nothing, 102, ""},
        {"a node port, though its system bears the local name", kNode, nothing, 102, ""},
        {"an unknown port", kNoPort, nothing, 100, failed + "Required instance not found in the map"},
        {"a system name in another case",
         otherCase,
         nothing,
         100,
         failed + "Required instance not found in the map"},
        {"no name of the local switch",
         kPort2,
         [](SimSwitch& s) { s.failNext("get_Local_Switch_World_Wide_Name"); },
         100,
         failed + "Unable to retrieve localWWN"},
        {"the record cannot be read",
         kPort2,
         [](SimSwitch& s) { s.failNext("xpl_swPortGetConfig"); },
         100,
         failed + "xpl_swPortGetConfig Failed"},
        {"the record is refused",
         kPort2,
         [](SimSwitch& s) { s.failNext("xpl_swPortSetConfig"); },
         100,
         failed + "xpl_swPortSetConfig Failed"},
    };
    for (const Row& row : rows)
    {
        row.prepare(sim);
        const Log_Capture log;
        EXPECT_EQ(rename(row.keys, "after"), row.status) << row.what;
        EXPECT_EQ(log.texts(),
                  row.logged.empty() ? std::vector<std::string>() : std::vector<std::string>{row.logged})
            << row.what;
        for (int number = 0; number < 4; ++number)
            EXPECT_NE(sim.port(number).name, "after") << row.what;
        EXPECT_EQ(served(kPort2)["ElementName"], "before") << row.what;
    }
    EXPECT_EQ(rename(kPort2, "after"), MODIFY_INSTANCE_OK);
}

TEST_F(FCPortOperations, WhatTheModelLeavesOutIsNotLookedAt)
{
    served(kPort2);
    sim.mark();
    // Without a name there is nothing to do.
    const Owned<VRAX_FCPort> named = port(kPort2);
    named->ElementName.set("after");
    EXPECT_EQ(VRAX_FCPort_Provider().modify_instance(port(kPort2).get(), named.get()), MODIFY_INSTANCE_OK);
    EXPECT_EQ(sim.calls("xpl_swPortGetConfig"), 0u);
    EXPECT_EQ(served(kPort2)["ElementName"], "before");
    // Ports of other switches stay out of reach even if their system is not part of the request.
    struct Row
    {
        Port_Keys keys;
        int status;
    };
    for (const Row& row : {Row{kRemotePort2, 102}, Row{kNoRemotePort, 100}})
    {
        const Log_Capture log;
        const Owned<VRAX_FCPort> instance = port(row.keys);
        instance->ElementName.set("after");
        const Owned<VRAX_FCPort> model(static_cast<VRAX_FCPort*>(clone(instance.get())));
        model->SystemName.clear();
        EXPECT_EQ(VRAX_FCPort_Provider().modify_instance(model.get(), instance.get()), row.status);
    }
    EXPECT_EQ(sim.platformCalls(), sim.calls("get_Local_Switch_World_Wide_Name"));
}

TEST_F(FCPortOperations, HoldTheMapWhileTheyTalkToTheSwitch)
{
    served(kPort2);
    const std::vector<std::string> calls = {
        "get_Local_Switch_World_Wide_Name", "xpl_swPortGetConfig", "xpl_swPortSetConfig"};
    std::vector<std::string> held;
    noteCallsUnderLock(VRAX_FCPort_Provider::kIndex, calls, held);
    rename(kPort2, "after");
    EXPECT_EQ(held, calls);
    held.clear();
    request(kPort2, 3);
    EXPECT_EQ(held, (std::vector<std::string>{"xpl_swPortGetConfig", "xpl_swPortSetConfig"}));
}

TEST_F(FCPortOperations, StatesThatCanBeRequested)
{
    struct Row
    {
        uint16 state;
        uint32 result;
        std::int32_t adminState; // afterwards
        const char* logged;
    };
    constexpr const char* kInvalid = "Invalid Requested State";
    const Row rows[] = {
        {2, 0, XPL_ADMIN_ONLINE, "Setting port Online"},
        {3, 0, XPL_ADMIN_OFFLINE, "Setting port Offline"},
        {7, 0, XPL_ADMIN_DIAGNOSTICS, "Setting port to Diagnostics"},
        {11, 0, XPL_ADMIN_DIAGNOSTICS, "Setting port to RESET"},
        {2, 0, XPL_ADMIN_ONLINE, "Setting port Online"},
        {0, 5, XPL_ADMIN_ONLINE, kInvalid},
        {1, 5, XPL_ADMIN_ONLINE, kInvalid},
        {4, 5, XPL_ADMIN_ONLINE, kInvalid},
        {5, 5, XPL_ADMIN_ONLINE, kInvalid},
        {6, 5, XPL_ADMIN_ONLINE, kInvalid},
        {8, 5, XPL_ADMIN_ONLINE, kInvalid},
        {9, 5, XPL_ADMIN_ONLINE, kInvalid},
        {10, 5, XPL_ADMIN_ONLINE, kInvalid},
        {12, 5, XPL_ADMIN_ONLINE, kInvalid},
        {65535, 5, XPL_ADMIN_ONLINE, kInvalid},
    };
    const xpl_swPortConfig before = record(2);
    for (const Row& row : rows)
    {
        sim.mark();
        const Log_Capture log(kLogInfo);
        EXPECT_EQ(request(kPort2, row.state), row.result) << row.state;
        EXPECT_EQ(writes(), row.result == 0 ? 1u : 0u) << row.state;
        std::vector<std::string> expected = {
            "RequestedState = " + std::to_string(row.state) +
                ", CreationClassName = VRAX_FCPort, DeviceID = " + kPort2.device,
            "Found VRAX_FCPort instance",
            "PortID = 2",
            row.logged};
        if (row.result == 0)
            expected.push_back("Successfully changed the port state");
        EXPECT_EQ(log.texts(), expected);

        xpl_swPortConfig wanted = before;
        wanted.adminState = row.adminState;
        const xpl_swPortConfig after = record(2);
        EXPECT_EQ(std::memcmp(&after, &wanted, sizeof(after)), 0) << row.state;
    }
    EXPECT_EQ(record(1).adminState, XPL_ADMIN_ONLINE);
}

TEST_F(FCPortOperations, ARequestWithoutAStateIsInvalid)
{
    Property<uint16> none;
    none.clear();
    Property<uint32> result;
    CIM_ConcreteJob* job = nullptr;
    const Owned<VRAX_FCPort> self = port(kPort2);
    EXPECT_EQ(VRAX_FCPort_Provider().RequestStateChange(self.get(), none, job, Property<Datetime>(), result),
              INVOKE_METHOD_OK);
    EXPECT_EQ(result.value, 5u);
    EXPECT_EQ(writes(), 0u);
}

TEST_F(FCPortOperations, TheNewStateShowsAfterTheNextLoad)
{
    EXPECT_EQ(served(kPort2)["EnabledState"], "2");
    EXPECT_EQ(request(kPort2, 3), 0u);
    EXPECT_EQ(served(kPort2)["EnabledState"], "2");
    clock.outlive();
    Description port = served(kPort2);
    EXPECT_EQ(port["EnabledState"], "3");
    EXPECT_EQ(port["OperationalStatus"], "[10]");
}

TEST_F(FCPortOperations, RequestsThatFail)
{
    struct Row
    {
        const char* what;
        Port_Keys keys;
        std::function<void(SimSwitch&)> prepare;
        uint32 result;
        std::string logged; // the last line
    };
    const auto nothing = [](SimSwitch&) {};
    const std::string failed = kOrigin + "RequestStateChange[] ";
    const Row rows[] = {
        {"the ports cannot be read",
         kPort2,
         [](SimSwitch& s) { s.refuseCacheLock(); },
         4,
         "VRAX_FCPort_Provider load failed"},
        {"an unknown port", kNoPort, nothing, 5, failed + "\n VRAX FCPort not found"},
        {"the record cannot be read",
         kPort2,
         [](SimSwitch& s) { s.failNext("xpl_swPortGetConfig"); },
         1,
         "PortID = 2"},
        {"the record is refused",
         kPort2,
         [](SimSwitch& s) { s.failNext("xpl_swPortSetConfig"); },
         1,
         failed + "Failed to  change the port state"},
        {"a port of another switch", kRemotePort2, nothing, 1, failed + "Not a port of the local switch"},
        {"a node port", kNode, nothing, 1, failed + "Not a port of the local switch"},
    };
    for (const Row& row : rows)
    {
        row.prepare(sim);
        const Log_Capture log(kLogInfo);
        EXPECT_EQ(request(row.keys, 3), row.result) << row.what;
        const std::vector<std::string> lines = log.texts();
        ASSERT_FALSE(lines.empty()) << row.what;
        EXPECT_EQ(lines.back(), row.logged) << row.what;
        for (int number = 0; number < 4; ++number)
            EXPECT_EQ(record(number).adminState, XPL_ADMIN_ONLINE) << row.what << ": port " << number;
    }
    EXPECT_EQ(request(kPort2, 3), 0u);
}

} // namespace
} // namespace cimple
