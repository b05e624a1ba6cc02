// Tests of zoning in scenarios: what is refused, and that a saved database and active copy start again as
// they were.
#include "simulator/model/hex.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace
{

std::string errorOf(const std::string& zoning)
{
    const std::string text = R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"}],)"
                             R"( "zoning": {)" +
                             zoning + "}}";
    return errorFrom([&] { parseScenario(text, "site.json"); });
}

const std::string kName =
    "expected a name of 1 to 64 letters, digits and \"-_$^\" that begins with a letter, got ";

const std::pair<const char*, std::string> kRefused[] = {
    {R"("zonesets": [])", "zonesets: unknown field; expected one of active, activeSet, aliases, "},
    {R"("limits": {"zones": 2001})", "limits/zones: expected a whole number from 0 to 2000, got 2001"},
    {R"("aliases": [{"members": []}])", "aliases/0/name: " + kName + "\"\""},
    {R"("aliases": [{"name": "a"}, {"name": "a"}])", "aliases/1/name: \"a\" appears twice"},
    {R"("aliases": [{"name": "a", "members": [{"alias": "a"}]}])",
     "aliases/0/members/0: expected one of wwn, address, domain with port"},
    {R"("zones": [{"name": "7"}])", "zones/0/name: " + kName + "\"7\""},
    {R"("zones": [{"name": "z", "type": "Hard"}])",
     "zones/0/type: expected one of Soft, HardVirtualFabric, HardACL, got \"Hard\""},
    {R"("zones": [{"name": "z", "members": [{}]}])",
     "zones/0/members/0: expected one of wwn, address, domain with port, alias"},
    {R"("zones": [{"name": "z", "members": [{"domain": 1}]}])",
     "zones/0/members/0: expected one of wwn, address, domain with port, alias"},
    {R"("zones": [{"name": "z", "members": [{"alias": "a", "address": "010300"}]}])",
     "zones/0/members/0: expected one of wwn, address, domain with port, alias"},
    {R"("zones": [{"name": "z", "members": [{"wwn": "10"}]}])",
     "zones/0/members/0/wwn: expected a World Wide Name of 16 hexadecimal digits, got \"10\""},
    {R"("zones": [{"name": "z", "members": [{"domain": 240, "port": 1}]}])",
     "zones/0/members/0/domain: expected a whole number from 1 to 239, got 240"},
    {R"("zones": [{"name": "z", "members": [{"alias": "a"}]}])", "zones/0/members/0: there is no \"a\""},
    {R"("zones": [{"name": "z", "members": [{"address": "01030a"}, {"address": "01030A"}]}])",
     "zones/0/members/1: \"01030A\" appears twice"},
    {R"("limits": {"zoneMembers": 1}, "zones": [{"name": "z", "members": [{"address": "010300"}, {"address": "010301"}]}])",
     "zones/0/members/1: \"010301\" is more than the limits allow"},
    {R"("zoneSets": [{"name": "s", "zones": [1]}])",
     "zoneSets/0/zones: expected a list of texts of at most 64 bytes, got [1]"},
    {R"("zones": [{"name": "z"}], "zoneSets": [{"name": "s", "zones": ["z", "y"]}])",
     "zoneSets/0/zones/1: there is no \"y\""},
    {R"("zones": [{"name": "z"}], "zoneSets": [{"name": "s", "zones": ["z", "z"]}])",
     "zoneSets/0/zones/1: \"z\" appears twice"},
    {R"("zoneSets": [{"name": "s"}], "active": "s")",
     "active: expected the name of a zone set with zones, got \"s\""},
    {R"("activeSet": {"name": "s"})", "activeSet/zones: expected at least one zone"},
    {R"("activeSet": {"name": "s", "zones": [{"name": "z"}, {"name": "z"}]})",
     "activeSet/zones/1/name: \"z\" appears twice"},
    {R"("activeSet": {"name": "s", "zones": [{"name": "z", "members": [{"alias": "a"}]}]})",
     "activeSet/zones/0/members/0: there is no \"a\""},
    {R"("active": "s", "activeSet": {"name": "s"})", "activeSet: expected either active or activeSet"},
};

TEST(ZoningScenario, FaultsSayWhereAndWhatWasExpected)
{
    for (const auto& [zoning, message] : kRefused)
        EXPECT_EQ(0u, errorOf(zoning).rfind("site.json: /zoning/" + message, 0)) << errorOf(zoning);
}

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
