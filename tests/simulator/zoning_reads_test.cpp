// Tests of reading the zoning databases: library calls, keys of the active zone set, scenarios.
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/zoning.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace
{

ZoningSetup sample()
{
    return ZoningSetup()
        .alias("host", {"210002a5c0de0003", "010300"})
        .alias("Host", {})
        .zone("z2", {"host", "010300", "1:A"})
        .zone("z1", {"210002A5C0DE00FF"}, ZoneType::hardAcl)
        .zone("empty", {})
        .zoneSet("prod", {"z1", "z2"})
        .zoneSet("none", {})
        .active("prod");
}

TEST(ZoningReads, TheConfiguredDatabaseInOrderOfCreation)
{
    SimSwitch sim = SimSwitch::make().zoning(sample());
    EXPECT_EQ((Texts{"prod", "none"}), namesFrom(xpl_fzsGetZonesetList));
    EXPECT_EQ((Texts{"z2", "z1", "empty"}), namesFrom(xpl_fzsGetZoneList));
    EXPECT_EQ((Texts{"host", "Host"}), namesFrom(xpl_fzsGetZoneAliasList));
    EXPECT_EQ((Texts{"z1", "z2"}), zonesOfSet("prod"));
    EXPECT_EQ(Texts{}, zonesOfSet("none"));
    EXPECT_EQ((Texts{"5 host", "3 010300", "2 1:A"}), membersFrom(xpl_fzsGetZoneMemberList, "z2"));
    EXPECT_EQ((Texts{"1 210002A5C0DE0003", "3 010300"}), membersFrom(xpl_fzsGetZoneAliasMemberList, "host"));
    EXPECT_EQ(Texts{}, membersFrom(xpl_fzsGetZoneMemberList, "empty"));
    std::int32_t type = 0;
    EXPECT_EQ(0, xpl_fzsGetZoneType(hSwitch, "z1", &type));
    EXPECT_EQ(XPL_ZT_HARD_ACL, type);
    EXPECT_EQ(XPL_INVALID_HANDLE, xpl_fzsGetZoneType(nullptr, "z1", &type));
    const std::string longest(64, 'x');
    const std::pair<std::string, const char*> kRefused[] = {{"", "status 9"},
                                                            {longest + "x", "status 9"},
                                                            {longest, "status 162"},
                                                            {"Z1", "status 162"},
                                                            {"a.b", "status 77"},
                                                            {"1a", "status 77"}};
    for (const auto& [name, status] : kRefused)
    {
        EXPECT_EQ(Texts{status}, zonesOfSet(name.c_str())) << name;
        EXPECT_EQ(Texts{status}, membersFrom(xpl_fzsGetZoneMemberList, name.c_str())) << name;
        EXPECT_EQ(Texts{status}, membersFrom(xpl_fzsGetZoneAliasMemberList, name.c_str())) << name;
    }
    EXPECT_EQ(Texts{"status 9"}, zonesOfSet(nullptr));
    EXPECT_EQ(0u, sim.outstandingBlocks());
    sim.failNext("xpl_fzsGetZoneList", 1, 100);
    EXPECT_EQ(Texts{"status 100"}, namesFrom(xpl_fzsGetZoneList));
}

TEST(ZoningReads, TheActiveSetIsACopyWithoutAliasesAndWithoutDoubles)
{
    SimSwitch sim = SimSwitch::make().zoning(sample());
    EXPECT_EQ("prod", valueOf("Oper.Zoning.ActiveZoneSet"));
    EXPECT_EQ((Texts{"z1", "z2", "status 103"}),
              keyWalk("Oper.Zoning.ActiveZoneSet.FirstZone", "Oper.Zoning.ActiveZoneSet.NextZone."));
    EXPECT_EQ((Texts{"210002a5c0de0003", "010300", "1:a", "status 103"}), activeMembers("z2"));
    EXPECT_EQ("status 103", valueOf("Oper.Zoning.ActiveZone.z2.NextZoneMember.1:A")) << "either letter case";
    const std::pair<const char*, const char*> kTypes[] = {{"z1.ZoneMember.210002A5C0DE00FF", "WWN"},
                                                          {"z2.ZoneMember.010300", "PortID"},
                                                          {"z2.ZoneMember.1:A", "DomainPort"},
                                                          {"z2.ZoneMember.host", "status 2"},
                                                          {"z1.ZoneMember.010300", "status 2"},
                                                          {"Z1.ZoneMember.210002A5C0DE00FF", "status 2"}};
    for (const auto& [key, type] : kTypes)
        EXPECT_EQ(type, valueOf(std::string("Oper.Zoning.ActiveZone.") + key + ".Type")) << key;
    for (const char* unknown : {"ActiveZoneSet.NextZone.empty",
                                "ActiveZone.empty.FirstZoneMember",
                                "ActiveZone.z2.NextZoneMember.010301"})
        EXPECT_EQ("status 2", valueOf(std::string("Oper.Zoning.") + unknown));
}

TEST(ZoningReads, WithoutAnActiveSet)
{
    SimSwitch sim = SimSwitch::make();
    char name[kZoneNameSize] = "untouched";
    EXPECT_EQ(XPL_FZS_NO_ACTIVE_ZONESET, xpl_fzsGetActiveZonesetName(hSwitch, name));
    EXPECT_STREQ("", name);
    EXPECT_EQ("", valueOf("Oper.Zoning.ActiveZoneSet"));
    EXPECT_EQ("status 103", valueOf("Oper.Zoning.ActiveZoneSet.FirstZone"));
    EXPECT_EQ(Texts{}, namesFrom(xpl_fzsGetZonesetList));
    sim.open(SimSwitch::make().zoning(sample()).scenario());
    get_Active_ZoneSet(name);
    EXPECT_STREQ("prod", name);
    sim.failNext("get_Active_ZoneSet");
    get_Active_ZoneSet(name);
    EXPECT_STREQ("", name);
}

TEST(ZoningReads, NamesThatOnlyTheActiveDatabaseHas)
{
    SimSwitch sim = SimSwitch::make().zoning(ZoningSetup()
                                                 .zone("z1", {"010100"})
                                                 .activeCopy("old")
                                                 .activeZone("z1", {"010200"})
                                                 .activeZone("gone", {"2:b"}));
    EXPECT_EQ((Texts{"z1", "gone"}), zonesOfSet("old"));
    EXPECT_EQ(Texts{"2 2:B"}, membersFrom(xpl_fzsGetZoneMemberList, "gone"));
    EXPECT_EQ(Texts{"3 010100"}, membersFrom(xpl_fzsGetZoneMemberList, "z1"))
        << "the configured one goes first";
    std::int32_t type = 0;
    EXPECT_EQ(0, xpl_fzsGetZoneType(hSwitch, "gone", &type));
    EXPECT_EQ(Texts{}, namesFrom(xpl_fzsGetZonesetList));
    EXPECT_EQ(Texts{"z1"}, namesFrom(xpl_fzsGetZoneList));
}

TEST(ZoningReads, SingleKeysAndTheDefaultZone)
{
    SimSwitch sim = SimSwitch::make().zoning(ZoningSetup().defaultZone(true));
    char value[kXplSmlTextSize] = "untouched";
    std::int32_t error = -1;
    EXPECT_EQ(0, xpl_smlGet(hSwitch, "Config.Zoning.DefaultZone", value, &error));
    EXPECT_STREQ("True", value);
    EXPECT_EQ(0, setKey("Config.Zoning.DefaultZone.False"));
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey("Config.Zoning.DefaultZone.false"));
    EXPECT_EQ("False", valueOf("Config.Zoning.DefaultZone"));
    EXPECT_EQ(XPL_UNKNOWN_KEY, xpl_smlGet(hSwitch, "Config.Zoning", value, &error));
    EXPECT_EQ(XPL_UNKNOWN_KEY, error);
    for (const std::string& key : {std::string(), std::string(kXplSmlTextSize, 'k')})
        EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_smlGet(hSwitch, key.c_str(), value, nullptr));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_smlGet(hSwitch, nullptr, value, &error));
    EXPECT_EQ(5u, sim.calls("xpl_smlGet"));
}

} // namespace
