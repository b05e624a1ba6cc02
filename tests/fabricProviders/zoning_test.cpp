// Tests of what clients do to zoning: what arrives in the switch and shows in what is published.
#include "fabricProviders/VRAX_MemberOfZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoneAliasElementSettingData_Provider.h"
#include "switchaccess/Zoning_Edit.h"
#include "switchaccess/zone_members.h"
#include "tests/fabricProviders/Zoning.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

// The library goes by the name, the map by the whole key.
TEST_F(Zoning, ADeletionByAnotherKeyLeavesTheMapAsItIs)
{
    EXPECT_EQ(logged([] { EXPECT_EQ(remove<VRAX_Zone>("x:y:z3"), "90"); }),
              "[CRIT:fabricProviders/VRAX_Zone_Provider:delete_instance[] Requested Instance not found, "
              "delete instance Failed]");
    EXPECT_EQ(sim.zoning().zones.size(), 2U);
}

// Whether the association's map has the pair at present.
bool isInMap(const std::string& zoneSet, const std::string& zone)
{
    const Read_Guard<VRAX_MemberOfZoneSet> guard;
    for (const VRAX_MemberOfZoneSet* pair : guard.view())
        if (pair->Collection->InstanceID.value == zoneSet.c_str() &&
            pair->Member->InstanceID.value == zone.c_str())
            return true;
    return false;
}

// The first request that a module gets may be one of these.
TEST_F(Zoning, MethodsLoadWhatTheyLookUp)
{
    const auto unloadAll = []
    {
        VRAX_ZoningService_Provider().unload();
        VRAX_ZoneMembership_Provider().unload();
        VRAX_ZoneSet_Provider().unload();
        VRAX_Zone_Provider().unload();
        VRAX_ZoneAlias_Provider().unload();
    };
    unloadAll();
    EXPECT_EQ(service.addZone(inactive("empty"), inactive("z2")), "0 0");
    EXPECT_TRUE(isInMap(inactive("empty"), inactive("z2")));
    unloadAll();
    EXPECT_EQ(service.addAlias(inactive("z2"), kLocalWwn + ":lone"), "0 0");
    unloadAll();
    EXPECT_EQ(service.createMember<VRAX_ZoneAlias>(4, "17:10", kLocalWwn + ":spare"), "0 0");
    unloadAll();
    EXPECT_EQ(service.addMember<VRAX_ZoneAlias>(kLocalWwn + ":lone", inactive("010203")), "0 0");
    for (const auto& [name, members] : sim.zoning().aliases)
        if (name == "lone")
            EXPECT_EQ(members, (Texts{"020304", "010203"}));
        else if (name == "spare")
            EXPECT_EQ(members, (Texts{"010203", "11:A"}));
}

// Whatever ends the request.
TEST_F(Zoning, AnEditSessionEndsWithItsScope)
{
    {
        const Zoning_Edit edit;
        EXPECT_TRUE(edit.begun());
        EXPECT_NE(sim.adminModeHolder(), "");
    }
    EXPECT_EQ(sim.adminModeHolder(), "");
}

// The simulated switch publishes no such member.
TEST_F(Zoning, IdentifiersOfOtherFormsAreNoMembers)
{
    const std::vector<std::pair<uint16, const char*>> others = {{2, ""},
                                                                {2, "2100026E1A40B7C"},
                                                                {2, "2100026E1A40B7CG"},
                                                                {3, "01020"},
                                                                {3, "01020G"},
                                                                {4, "1"},
                                                                {4, "1:"},
                                                                {4, ":1"},
                                                                {4, "100:1"},
                                                                {4, "1:100"},
                                                                {4, "1:G"}};
    for (const auto& [type, id] : others)
    {
        Member_Record record;
        EXPECT_FALSE(memberRecord(type, id, record)) << id;
    }
}

// In either letter case, and zones before aliases.
TEST_F(Zoning, AMemberIsDeletedFromTheHolderOfItsName)
{
    EXPECT_EQ(service.createAlias("z2"), "0 0");
    EXPECT_EQ(service.createZone("Z2", 2), "0 0");
    EXPECT_EQ(logged([] { EXPECT_EQ(remove<VRAX_ZoneMembership>(inactive("010203")), "0"); }),
              "[ElementName: z2][found the instance][found the instance][found the instance]"
              "[NodeName: 010203]");
    for (const auto& [name, members] : sim.zoning().zones)
        if (name == "z2")
            EXPECT_EQ(members, Texts{kHost});
}

// What the switch has, and what of it shows at once and after the next load.
TEST_F(Zoning, ChangesArriveInTheSwitchAndShow)
{
    const auto shown = [this](auto provider, const std::string& key)
    {
        for (const Description& one : instances<decltype(provider)>())
            if (one.count("InstanceID") != 0 && one.at("InstanceID") == key)
                return one;
        return Description();
    };
    typedef std::vector<std::pair<std::string, Texts>> Lists;
    const auto named = [](const Lists& lists, const std::string& name)
    {
        for (const auto& one : lists)
            if (one.first == name)
                return one.second;
        return Texts{"none"};
    };

    EXPECT_EQ(service.createZoneSet("new"), "0 0");
    EXPECT_EQ(service.out, (Description{{"InstanceID", inactive("new")}}));
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")), service.out);
    EXPECT_EQ(service.createZone("za", 1), "0 0");
    EXPECT_EQ(service.out,
              (Description{{"InstanceID", inactive("za")}, {"ElementName", "za"}, {"ZoneType", "1"}}));
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("za")), service.out);
    EXPECT_EQ(service.createZone("zb", 2), "0 0");
    EXPECT_EQ(service.createAlias("al"), "0 0");
    EXPECT_EQ(service.out, (Description{{"InstanceID", kLocalWwn + ":al"}, {"CollectionAlias", "al"}}));
    EXPECT_EQ(shown(VRAX_ZoneAlias_Provider(), kLocalWwn + ":al"), service.out);

    EXPECT_EQ(service.createMember<VRAX_Zone>(4, "1:16", inactive("za")), "0 0");
    EXPECT_EQ(service.out,
              (Description{{"InstanceID", inactive("1:16")},
                           {"ConnectivityMemberType", "4"},
                           {"ConnectivityMemberID", "1:16"}}));
    // As the switch writes it: in hexadecimal.
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("1:16")), Description());
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("1:10")).at("ElementName"), "za");
    EXPECT_EQ(service.createMember<VRAX_ZoneAlias>(2, "2100026e1a40b7da", kLocalWwn + ":al"), "0 0");
    EXPECT_EQ(service.createMember<VRAX_Zone>(3, "01ab03", inactive("zb")), "0 0");
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("01AB03")).at("ElementName"), "zb") << "at once";
    EXPECT_EQ(service.addMember<VRAX_Zone>(inactive("zb"), inactive("1:10")), "0 0");
    EXPECT_EQ(service.addAlias(inactive("zb"), kLocalWwn + ":al"), "0 0");
    instances<VRAX_MemberOfZoneSet_Provider>();
    EXPECT_EQ(service.addZone(inactive("new"), inactive("za")), "0 0");
    EXPECT_TRUE(isInMap(inactive("new"), inactive("za"))) << "at once";
    EXPECT_EQ(service.addZone(inactive("new"), inactive("zb")), "0 0");

    const auto now = sim.zoning();
    EXPECT_EQ(named(now.zoneSets, "new"), (Texts{"za", "zb"}));
    EXPECT_EQ(named(now.zones, "za"), (Texts{"1:10"}));
    EXPECT_EQ(named(now.zones, "zb"), (Texts{"01AB03", "1:10", "al"}));
    EXPECT_EQ(named(now.aliases, "al"), (Texts{"2100026E1A40B7DA"}));
    clock.outlive();
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")),
              (Description{{"InstanceID", inactive("new")}, {"ElementName", "new"}, {"Active", "false"}}));
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("za")).at("ZoneType"), "1");
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("zb")).at("ZoneType"), "2");

    EXPECT_EQ(service.activate(inactive("new"), true), "0 0");
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), "Active:" + kLocalWwn + ":new"), Description())
        << "after the next load";
    clock.outlive();
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), "Active:" + kLocalWwn + ":new").at("Active"), "true");
    EXPECT_EQ(sim.zoning().active.name, "new");
    // The enforced copy has what the alias stands for, and does not follow the configured zone.
    const Lists enforced = {{"za", {"1:10"}}, {"zb", {"01AB03", "1:10", "2100026E1A40B7DA"}}};
    EXPECT_EQ(sim.zoning().active.zones, enforced);
    EXPECT_EQ(service.createMember<VRAX_Zone>(2, kHost, inactive("za")), "0 0");
    EXPECT_EQ(sim.zoning().active.zones, enforced);
    EXPECT_EQ(service.activate(inactive("new"), true), "0 0");
    EXPECT_EQ(named(sim.zoning().active.zones, "za"), (Texts{"1:10", kHost}));

    EXPECT_EQ(service.activate(inactive("new"), false), "0 0");
    EXPECT_EQ(sim.zoning().active.name, "");
    EXPECT_EQ(remove<VRAX_ZoneSet>(inactive("new")), "0");
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")), Description()) << "at once";
    EXPECT_EQ(remove<VRAX_Zone>(inactive("za")), "0");
    EXPECT_EQ(remove<VRAX_ZoneAlias>(kLocalWwn + ":al"), "0");
    EXPECT_EQ(named(sim.zoning().zoneSets, "new"), Texts{"none"});
    EXPECT_EQ(named(sim.zoning().zones, "za"), Texts{"none"});
    EXPECT_EQ(named(sim.zoning().aliases, "al"), Texts{"none"});
}

// Who waits for a large database sees how far it is.
TEST_F(Zoning, LongLoadsTellHowFarTheyAre)
{
    simulator::ZoningSetup zoning;
    for (int i = 1; i <= 401; ++i)
    {
        const std::string number = std::to_string(i);
        zoning.alias("a" + number, {"1:A"}).zone("z" + number, {"1:A"});
    }
    sim.open(simulator::SimSwitch::make().zoning(zoning).scenario());
    makeMapsStale();
    const std::string lines = logged(
        [this]
        {
            instances<VRAX_ZoneMembership_Provider>();
            instances<VRAX_ZoneAliasElementSettingData_Provider>();
        });
    EXPECT_EQ(lines,
              "[processed 200 zones, zoneName = z200 ][processed 400 zones, zoneName = z400 ]"
              "[processed 200 aliases, aliasName= a200 ][processed 400 aliases, aliasName= a400 ]"
              "[Calling xpl_fzsGetActiveZonesetName ]"
              "[VRAX_ZoneAliasSettingData, processed 200 alias entries]"
              "[VRAX_ZoneAliasSettingData, processed 400 alias entries]");
}

} // namespace
} // namespace cimple
