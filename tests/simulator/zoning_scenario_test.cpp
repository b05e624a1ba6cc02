// Tests of zoning in scenarios: a saved database and active copy start again as they were.
#include "simulator/model/hex.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace
{

TEST(ZoningScenario, ASavedSwitchStartsAgainAsItWas)
{
    ZoningLimits limits;
    limits.zoneSets = 3;
    limits.zones = 4;
    limits.zoneMembers = 5;
    limits.zonesPerZoneSet = 3;
    limits.aliases = 2;
    SimSwitch sim =
        SimSwitch::make().zoning(ZoningSetup()
                                     .limits(limits)
                                     .defaultZone(true)
                                     .alias("b", {"210002A5C0DE0003", "010300", "01030A"})
                                     .alias("a", {})
                                     .zone("z2", {"b", "1:A", "010300"}, ZoneType::hardVirtualFabric)
                                     .zone("z1", {"b", "2:FF"}, ZoneType::hardAcl)
                                     .zoneSet("s2", {"z2", "z1"})
                                     .zoneSet("s1", {})
                                     .active("s2"));
    // The copy has eight members, three more than the limits allow to a database.
    struct Step
    {
        const char* name;
        bool copyDiffers;
        std::function<int()> next;
    };
    const Step kSteps[] = {
        {"as configured", false, [] { return xpl_fzsDeleteZone(hSwitch, "z2"); }},
        {"one of its zones gone", true, [] { return xpl_fzsRemoveZoneset(hSwitch, "s2"); }},
        {"its set gone", true, [] { return xpl_fzsDeactivateZoneset(hSwitch); }},
        {"none active", false, [] { return 0; }}};
    for (const Step& step : kSteps)
    {
        const std::string once = formatScenario(sim.scenario());
        EXPECT_EQ(step.copyDiffers, once.find("activeSet") != std::string::npos) << step.name;
        const ZoningView before = sim.zoning();
        sim.open(parseScenario(once, "saved"));
        EXPECT_EQ(once, formatScenario(sim.scenario())) << step.name;
        const ZoningView after = sim.zoning();
        EXPECT_EQ(before.aliases, after.aliases) << step.name;
        EXPECT_EQ(before.zones, after.zones) << step.name;
        EXPECT_EQ(before.zoneSets, after.zoneSets) << step.name;
        EXPECT_EQ(before.active.name, after.active.name) << step.name;
        EXPECT_EQ(before.active.zones, after.active.zones) << step.name;
        EXPECT_EQ(0, step.next());
    }
    EXPECT_EQ("True", valueOf("Config.Zoning.DefaultZone"));
    EXPECT_EQ(std::string::npos, formatScenario(SimSwitch::make().scenario()).find("zoning"));
}

TEST(ZoningScenario, ALargeDatabaseLoadsAndWalks)
{
    ZoningSetup setup;
    const auto numbered = [](const char* what, int number) { return what + std::to_string(number); };
    for (int i = 0; i < 2000; ++i)
        setup.alias(numbered("alias", i), {});
    for (int i = 0; i < 1000; ++i)
    {
        Texts members;
        for (int j = 0; j < 20; ++j)
            members.push_back(hexOf(0x2100000000000000 + static_cast<std::uint64_t>(20 * i + j), 16));
        setup.zone(numbered("zone", i), members);
    }
    for (int i = 0; i < 64; ++i)
    {
        Texts zones;
        for (int j = 0; j < 1000; ++j)
            zones.push_back(numbered("zone", j));
        setup.zoneSet(numbered("set", i), zones);
    }
    SimSwitch sim = SimSwitch::make().zoning(setup.active("set7"));
    EXPECT_EQ(1001u,
              keyWalk("Oper.Zoning.ActiveZoneSet.FirstZone", "Oper.Zoning.ActiveZoneSet.NextZone.").size());
    EXPECT_EQ(21u, activeMembers("zone999").size());
    EXPECT_EQ(2000u, namesFrom(xpl_fzsGetZoneAliasList).size());
    ASSERT_EQ(0, getZoningEditMode());
    EXPECT_EQ(0, setKey("Cmd.Zoning.Zone.zone0.AddZoneMember.alias1999"));
    EXPECT_EQ(0, saveZoningEdit());
    EXPECT_EQ(21u, membersFrom(xpl_fzsGetZoneMemberList, "zone0").size());
}

TEST(ZoningScenario, ShippedFilesHaveZonesOfTheirNodes)
{
    for (const char* file : {"/default.json", "/chassis.json"})
    {
        SimSwitch sim(readScenario(std::string(SCENARIO_DIR) + file));
        const ZoningView view = sim.zoning();
        EXPECT_EQ(2u, view.zoneSets.size());
        EXPECT_EQ(view.zoneSets.front().first, view.active.name);
        for (const auto& one : sim.scenario().switches)
            EXPECT_EQ(view.active.name, sim.activeZoneSetOf(one.domain).name) << file;
    }
}

} // namespace
