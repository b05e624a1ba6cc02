// Tests of calls from many threads at once, for the thread sanitizer as much as for their results.
#include "platform/data_cache.h"
#include "platform/switch_server.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace simulator;

namespace
{

void readEverything()
{
    DataCache* cache = DataCache::instance();
    ASSERT_EQ(0, cache->dcRdLock());
    for (SwitchCache* one : switchWalk())
    {
        EXPECT_FALSE(one->getWwn().empty()) << "a switch left under the read lock";
        const std::string domain = std::to_string(one->getDomainID());
        for (const std::string& address : attachedTo(domain))
            EXPECT_EQ(16u, valueOf("Oper.NameServerAll." + domain + ".Entry." + address + ".PortWwn").size());
    }
    for (const std::string& index : portWalk())
    {
        // The two belong together: one batch is one state of the switch.
        auto entries =
            batchOf({"Oper.UserPort.0." + index + ".OperState", "Oper.UserPort.0." + index + ".LinkSpeed"});
        ASSERT_EQ(0, getBatch(entries));
        EXPECT_EQ(std::strcmp(entries[0].value, "Online") == 0,
                  std::strcmp(entries[1].value, "Unknown") != 0);
    }
    cache->dcRdUnlock();
    auto hardware = batchOf({"Oper.Switch.TempSensor.1.Reading",
                             "Oper.Switch.TempSensor.1.State",
                             "Oper.Switch.IOBlade.1.Present",
                             "Oper.UserPort.0.0.OperState"});
    ASSERT_EQ(0, getBatch(hardware));
    EXPECT_EQ(std::strtod(hardware[0].value, nullptr) >= 70, std::strcmp(hardware[1].value, "Critical") == 0);
    EXPECT_TRUE(std::strcmp(hardware[2].value, "True") == 0 || std::strcmp(hardware[3].value, "Online") != 0);
    char** cell = get_Local_Switch_World_Wide_Name();
    std::free(*cell);
    xpl_libFreeMemory(cell);
    EXPECT_NE(2u, membersFrom(xpl_fzsGetZoneMemberList, "z").size()) << "half of an edit session";
    activeMembers("z");
}

// Gives the zone two more members and takes them away again, each in one session.
void editZone(const char* command)
{
    EXPECT_EQ(0, getZoningEditMode());
    for (const char* member : {"1:1", "1:2"})
        EXPECT_EQ(0, setKey(std::string("Cmd.Zoning.Zone.z.") + command + "ZoneMember." + member));
    EXPECT_EQ(0, saveZoningEdit());
}

TEST(Concurrency, ReadersSeeWholeStatesWhileEverythingChanges)
{
    SimSwitch sim = SimSwitch::make()
                        .blades(2, 3)
                        .supplies(1)
                        .temperature("Intake", 30)
                        .zoning(ZoningSetup().zone("z", {"010100"}).zoneSet("s", {"z"}));
    std::atomic<bool> stop{false};
    const auto readOn = [&stop]
    {
        while (!stop)
            readEverything();
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back(readOn);
    SwitchScenario remote = SimSwitch::make().remote(2, 3).scenario().switches.back();
    NodeScenario node;
    node.domain = 2;
    node.port = 1;
    node.portWwn = "210002a5c0de0001";
    for (int i = 0; i < 60; ++i)
    {
        sim.addSwitch(remote);
        sim.pinTemperature(1, 90);
        sim.pullBlade(1);
        sim.failSupply(1);
        sim.portDown(i % 6);
        sim.addNode(node);
        setKey("Config.UserPort.0.0.LinkSpeed.2Gb/s");
        editZone("Add");
        EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "s"));
        EXPECT_EQ(0, xpl_fzsDeactivateZoneset(hSwitch));
        editZone("Rem");
        sim.advance(std::chrono::milliseconds(300));
        sim.removeNode(node.portWwn);
        sim.portUp(i % 6);
        sim.failNext("Oper.Nothing.", 1);
        sim.removeSwitch(2);
        sim.releaseSensor(SensorKind::temperature, 1);
        sim.insertBlade(1);
        sim.insertSupply(1);
        setKey("Config.UserPort.0.0.LinkSpeed.Auto");
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(0u, sim.outstandingBlocks());
    EXPECT_EQ(0, sim.heldCacheLocks());
}

} // namespace
