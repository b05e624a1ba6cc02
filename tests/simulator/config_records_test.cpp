// Tests of configuration records: what they show, what they take, and the bytes that are nobody's here.
#include "platform/switch_config.h"

#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace simulator;

namespace
{

// All bytes of a record, reserved ones included.
template <class Record>
std::string bytesOf(const Record& record)
{
    return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

TEST(SwitchRecord, ShowsAndTakesTheConfiguration)
{
    const SimSwitch sim = SimSwitch::make().domain(9).switchFacts(
        [](SwitchScenario& one)
        {
            one.configuredAdminState = AdminState::diagnostics;
            one.domainLocked = true;
            one.principalPriority = 1;
        });
    xpl_swSwitchConfig record = switchRecord();
    EXPECT_STREQ("sim-switch", record.symbolicName);
    EXPECT_EQ(XPL_ADMIN_DIAGNOSTICS, record.adminState);
    EXPECT_EQ(9, record.preferredDomainId);
    EXPECT_EQ(1, record.domainIdLock);
    EXPECT_EQ(1, record.principalPriority);

    std::strcpy(record.symbolicName, "exactly-thirty-two-characters-ok");
    record.adminState = XPL_ADMIN_OFFLINE;
    record.preferredDomainId = 239;
    record.domainIdLock = 0;
    record.principalPriority = 0xFF;
    EXPECT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    EXPECT_EQ(bytesOf(record), bytesOf(switchRecord()));
    EXPECT_EQ("exactly-thirty-two-characters-ok", valueOf("Config.Switch.SymName"));
    EXPECT_EQ("Offline", valueOf("Oper.Switch.AdminState"));
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.0.OperState"));
}

TEST(SwitchRecord, RefusesWhatTheSwitchCannotBe)
{
    const SimSwitch sim = SimSwitch::make();
    const xpl_swSwitchConfig good = switchRecord();
    using Record = xpl_swSwitchConfig;
    const std::function<void(Record&)> faults[] = {
        [](Record& r) { std::fill(std::begin(r.symbolicName), std::end(r.symbolicName), 'x'); },
        [](Record& r) { r.adminState = 0; },
        [](Record& r) { r.adminState = 4; },
        [](Record& r) { r.preferredDomainId = 0; },
        [](Record& r) { r.preferredDomainId = 240; },
        [](Record& r) { r.domainIdLock = 2; },
        [](Record& r) { r.principalPriority = 2; },
    };
    for (const auto& fault : faults)
    {
        xpl_swSwitchConfig record = good;
        record.reserved3[0] = static_cast<std::uint8_t>(~record.reserved3[0]);
        fault(record);
        EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swSwitchSetConfig(hSwitch, &record)) << &fault - faults;
        EXPECT_EQ(bytesOf(good), bytesOf(switchRecord())) << "nothing of it is taken: " << &fault - faults;
    }
    xpl_swSwitchConfig record;
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swSwitchGetConfig(hSwitch, 1, &record));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swSwitchGetConfig(hSwitch, 0, nullptr));
    EXPECT_EQ(XPL_INVALID_HANDLE, xpl_swSwitchSetConfig(nullptr, &good));
}

TEST(SwitchRecord, OnlyAChangedAdministrativeStateActs)
{
    // The switch is offline for now and configured to start online.
    SimSwitch sim =
        SimSwitch::make().switchFacts([](SwitchScenario& one) { one.adminState = AdminState::offline; });
    xpl_swSwitchConfig record = switchRecord();
    EXPECT_EQ(XPL_ADMIN_ONLINE, record.adminState);
    std::strcpy(record.symbolicName, "renamed");
    EXPECT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    EXPECT_EQ("renamed", valueOf("Config.Switch.SymName"));
    EXPECT_EQ("Offline", valueOf("Oper.Switch.AdminState"));
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.0.OperState"));

    record.adminState = XPL_ADMIN_DIAGNOSTICS;
    EXPECT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    EXPECT_EQ("Diagnostics", valueOf("Oper.Switch.AdminState"));
    EXPECT_EQ("Diagnostics", valueOf("Config.Switch.AdminState"));
}

TEST(PortRecord, ANewNameLeavesStateAndLinkAlone)
{
    const SimSwitch sim = SimSwitch::make().ports(2).port(
        1, [](PortScenario& port) { port.adminState = AdminState::diagnostics; });
    xpl_swPortConfig record = portRecord(1);
    std::strcpy(record.symbolicName, "renamed");
    EXPECT_EQ(0, xpl_swPortSetConfig(hSwitch, 1, &record));
    EXPECT_EQ("renamed", valueOf("Oper.UserPort.0.1.SymPortName"));
    EXPECT_EQ("Diagnostics", valueOf("Oper.UserPort.0.1.OperState"));
    std::strcpy(record.symbolicName, "online");
    record.adminState = XPL_ADMIN_ONLINE;
    EXPECT_EQ(0, xpl_swPortSetConfig(hSwitch, 1, &record));
    EXPECT_EQ("Online", valueOf("Oper.UserPort.0.1.OperState"));
    std::strcpy(record.symbolicName, "renamed again");
    EXPECT_EQ(0, xpl_swPortSetConfig(hSwitch, 1, &record));
    EXPECT_EQ(0u, counterOf(1, "TxLinkResets")) << "a changed record resets no link";
}

TEST(PortRecord, ShowsAndTakesTheConfiguration)
{
    const SimSwitch sim = SimSwitch::make().ports(3);
    xpl_swPortConfig record = portRecord(2);
    EXPECT_STREQ("Port2", record.symbolicName);
    EXPECT_EQ(XPL_ADMIN_ONLINE, record.adminState);
    EXPECT_NE(bytesOf(record), bytesOf(portRecord(1)));

    std::memset(record.symbolicName, 'n', 255);
    record.symbolicName[255] = '\0';
    record.adminState = XPL_ADMIN_OFFLINE;
    record.reserved[0] = 0x11;
    record.reserved[287] = 0x22;
    EXPECT_EQ(0, xpl_swPortSetConfig(hSwitch, 2, &record));
    EXPECT_EQ(bytesOf(record), bytesOf(portRecord(2)));
    EXPECT_EQ(std::string(255, 'n'), valueOf("Oper.UserPort.0.2.SymPortName"));
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.2.OperState"));

    record.symbolicName[255] = 'n';
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swPortSetConfig(hSwitch, 2, &record));
    for (const int port : {-1, 3, 256})
    {
        EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swPortGetConfig(hSwitch, port, 0, &record)) << port;
        EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_swPortSetConfig(hSwitch, port, &record)) << port;
    }
}

TEST(Resets, AnUnchangedRecordResetsTheLinkAndASwitchResetTheCounters)
{
    SimSwitch sim = SimSwitch::make().ports(2).uptimeSeconds(3600);
    const xpl_swPortConfig record = portRecord(0);
    EXPECT_EQ(0, xpl_swPortSetConfig(hSwitch, 0, &record));
    EXPECT_EQ(1u, counterOf(0, "TxLinkResets"));
    EXPECT_EQ(0u, counterOf(1, "TxLinkResets"));
    EXPECT_NE(0u, counterOf(0, "TotalRxWords"));
    EXPECT_EQ(0, xpl_swSwitchForceReset(hSwitch));
    EXPECT_EQ(0u, counterOf(0, "TotalRxWords"));
    EXPECT_EQ(0u, counterOf(0, "TxLinkResets"));
    sim.advance(std::chrono::seconds(1));
    EXPECT_NE(0u, counterOf(0, "TotalRxWords")) << "and go on from there";
}

} // namespace
