// Tests of changing zoning: the library's calls, the edit session, the administrative mode.
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
        .alias("host", {"210002a5c0de0003"})
        .alias("abcdef", {"010301"}) // the form of an address, too
        .zone("z1", {"host", "010300"})
        .zone("z2", {"1:A"})
        .zoneSet("prod", {"z1"})
        .zoneSet("none", {})
        .zoneSet("other", {"z2"})
        .active("prod");
}

struct Change
{
    std::function<int()> act;
    int status;
    const char* write; // as listed; null: the call fails before it changes anything
};

std::vector<Change> directChanges()
{
    const auto toZone = [](const char* zone, Texts members)
    { return [=] { return addMembers(xpl_fzsAddZoneMembers, zone, members); }; };
    const auto toAlias = [](const char* alias, Texts members)
    { return [=] { return addMembers(xpl_fzsAddZoneAliasMembers, alias, members); }; };
    return {
        {[] { return addZoneSet("new"); }, 0, "fzs create zone set new"},
        {[] { return addZoneSet("prod"); }, XPL_FZS_NAME_TAKEN, "fzs create zone set prod"},
        {[] { return addZoneSet("1st"); }, XPL_INVALID_NAME, "fzs create zone set 1st"},
        {[] { return addZoneSet(""); }, XPL_INVALID_PARAMETER, "fzs create zone set "},
        {[] { return addZoneSet(nullptr); }, XPL_INVALID_PARAMETER, "fzs create zone set "},
        {[] { return createZone("Z1", XPL_ZT_HARD_ACL); }, 0, "fzs create zone Z1"},
        {[] { return createZone("z1"); }, XPL_FZS_NAME_TAKEN, "fzs create zone z1"},
        {[] { return createZone("z 3"); }, XPL_INVALID_NAME, "fzs create zone z 3"},
        {[] { return createZone("z3", 4); }, XPL_INVALID_PARAMETER, nullptr},
        {[] { return xpl_fzsAddZoneAlias(hSwitch, "z1"); }, 0, "fzs create alias z1"},
        {[] { return xpl_fzsAddZoneAlias(hSwitch, "host"); }, XPL_FZS_NAME_TAKEN, "fzs create alias host"},
        {[] { return xpl_fzsAddZoneAlias(hSwitch, nullptr); }, XPL_INVALID_PARAMETER, "fzs create alias "},
        {[] { return xpl_fzsAddZone(hSwitch, "z2", "none"); }, 0, "fzs add zone z2 to zone set none"},
        {[] { return xpl_fzsAddZone(hSwitch, "z1", "prod"); },
         XPL_FZS_NAME_TAKEN,
         "fzs add zone z1 to zone set prod"},
        {[] { return xpl_fzsAddZone(hSwitch, "z9", "prod"); },
         XPL_FZS_UNKNOWN_NAME,
         "fzs add zone z9 to zone set prod"},
        {[] { return xpl_fzsAddZone(hSwitch, "z2", "Prod"); },
         XPL_FZS_UNKNOWN_NAME,
         "fzs add zone z2 to zone set Prod"},
        {toZone("z1", {"010301", "ef:ff", "abcdef0123456789"}),
         0,
         "fzs add members 010301,EF:FF,ABCDEF0123456789 to zone z1"},
        {toZone("z1", {"010302", "010300"}),
         XPL_FZS_MEMBER_EXISTS,
         "fzs add members 010302,010300 to zone z1"},
        {toZone("z1", {"010302", "010302"}),
         XPL_FZS_MEMBER_EXISTS,
         "fzs add members 010302,010302 to zone z1"},
        {toZone("z1", {"host"}), XPL_FZS_MEMBER_EXISTS, "fzs add members host to zone z1"},
        {toZone("z1", {"ghost"}), XPL_FZS_UNKNOWN_NAME, "fzs add members ghost to zone z1"},
        {toZone("z1", {"f0:1"}), XPL_INVALID_PARAMETER, "fzs add members F0:1 to zone z1"}, // domain 240
        {toZone("z1", {"000000"}), XPL_INVALID_PARAMETER, "fzs add members 000000 to zone z1"},
        {toZone("z9", {"010302"}), XPL_FZS_UNKNOWN_NAME, "fzs add members 010302 to zone z9"},
        {toAlias("host", {"010302"}), 0, "fzs add members 010302 to alias host"},
        {toAlias("host", {"210002A5C0DE0003"}),
         XPL_FZS_ALIAS_MEMBER_EXISTS,
         "fzs add members 210002A5C0DE0003 to alias host"},
        {toAlias("host", {"abcdeX"}), XPL_INVALID_PARAMETER, "fzs add members abcdeX to alias host"},
        {toAlias("ghost", {"010302"}), XPL_FZS_UNKNOWN_NAME, "fzs add members 010302 to alias ghost"},
        {[] { return xpl_fzsRemoveZoneset(hSwitch, "prod"); }, 0, "fzs remove zone set prod"},
        {[] { return xpl_fzsRemoveZoneset(hSwitch, "z1"); }, XPL_FZS_UNKNOWN_NAME, "fzs remove zone set z1"},
        {[] { return xpl_fzsDeleteZone(hSwitch, "z1"); }, 0, "fzs delete zone z1"},
        {[] { return xpl_fzsDeleteZone(hSwitch, "z9"); }, XPL_FZS_UNKNOWN_NAME, "fzs delete zone z9"},
        {[] { return xpl_fzsActivateZoneset(hSwitch, "other"); }, 0, "fzs activate zone set other"},
        {[] { return xpl_fzsActivateZoneset(hSwitch, "z1"); },
         XPL_FZS_UNKNOWN_NAME,
         "fzs activate zone set z1"},
        {[] { return xpl_fzsActivateZoneset(hSwitch, "none"); },
         XPL_INVALID_PARAMETER,
         "fzs activate zone set none"},
        {[] { return xpl_fzsDeactivateZoneset(hSwitch); }, 0, "fzs deactivate zone set"},
    };
}

TEST(ZoningWrites, EachCallHappensOrSaysWhyNotAndChangesNothingThen)
{
    SimSwitch sim = SimSwitch::make();
    for (const Change& change : directChanges())
    {
        const std::string name = change.write != nullptr ? change.write : "?";
        sim.open(SimSwitch::make().zoning(sample()).scenario());
        const auto before = sim.scenario();
        sim.mark();
        EXPECT_EQ(change.status, change.act()) << name;
        EXPECT_EQ(change.write != nullptr ? Texts{change.write} : Texts{}, sim.writes());
        EXPECT_EQ(change.status == 0, !sim.zoning().lastChange.empty()) << name;
        EXPECT_EQ(change.status == 0, formatScenario(before) != formatScenario(sim.scenario())) << name;
        EXPECT_EQ("", sim.adminModeHolder());
        EXPECT_EQ(0u, sim.outstandingBlocks());
        // Whoever holds the mode keeps all out; refusals for other reasons may come first or not.
        sim.open(SimSwitch::make().zoning(sample()).scenario());
        sim.holdAdminMode("console");
        const int expected = change.write != nullptr ? int{XPL_FZS_LOCKED} : change.status;
        EXPECT_EQ(expected, change.act()) << name;
        EXPECT_EQ(formatScenario(before), formatScenario(sim.scenario())) << name;
        EXPECT_EQ("console", sim.adminModeHolder());
    }
}

TEST(ZoningWrites, LimitsAreToldAndKept)
{
    ZoningLimits limits;
    limits.zoneSets = 3;
    limits.zones = 3;
    limits.zoneMembers = 5;
    limits.zonesPerZoneSet = 2;
    limits.aliases = 3;
    SimSwitch sim = SimSwitch::make().zoning(sample().limits(limits));
    xpl_fzsZoningLimitations told{};
    ASSERT_EQ(0, xpl_fzsGetZoningLimitations(hSwitch, &told));
    EXPECT_EQ((std::vector<std::uint32_t>{3, 3, 5, 2, 3}),
              (std::vector<std::uint32_t>{
                  told.zonesets, told.zones, told.zoneMembers, told.zonesPerZoneset, told.zoneAliases}));
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, addZoneSet("new"));
    EXPECT_EQ(0, createZone("z3"));
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, createZone("z4"));
    EXPECT_EQ(0, xpl_fzsAddZoneAlias(hSwitch, "third"));
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, xpl_fzsAddZoneAlias(hSwitch, "fourth"));
    EXPECT_EQ(0, xpl_fzsAddZone(hSwitch, "z2", "prod"));
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, xpl_fzsAddZone(hSwitch, "z3", "prod"));
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, addMembers(xpl_fzsAddZoneMembers, "z3", {"010301", "010302", "010303"}));
    EXPECT_EQ(0, addMembers(xpl_fzsAddZoneMembers, "z3", {"010301", "010302"})) << "nothing was added";
    EXPECT_EQ(0, addMembers(xpl_fzsAddZoneAliasMembers, "third", {"010301"})) << "aliases are not counted";
    EXPECT_EQ(0, xpl_fzsDeleteZone(hSwitch, "z1"));
    EXPECT_EQ(0, addMembers(xpl_fzsAddZoneMembers, "z3", {"010303", "010304"})) << "there is room again";
    EXPECT_EQ(XPL_FZS_LIMIT_REACHED, addMembers(xpl_fzsAddZoneMembers, "z3", {"010305"}));
}

TEST(ZoningWrites, ZonesAndZoneSetsThatGo)
{
    SimSwitch sim = SimSwitch::make().zoning(sample());
    EXPECT_EQ(0, xpl_fzsRemoveZoneset(hSwitch, "other"));
    EXPECT_EQ((Texts{"z1", "z2"}), namesFrom(xpl_fzsGetZoneList));
    EXPECT_EQ(0, xpl_fzsDeleteZone(hSwitch, "z1"));
    EXPECT_EQ((NamedLists{{"prod", {}}, {"none", {}}}), sim.zoning().zoneSets);
    EXPECT_EQ((NamedLists{{"z1", {"210002A5C0DE0003", "010300"}}}), sim.zoning().active.zones);
    EXPECT_EQ(0, createZone("z1"));
    EXPECT_EQ((Texts{"z2", "z1"}), namesFrom(xpl_fzsGetZoneList)) << "in order of creation";
}

TEST(ZoningWrites, ObjectsOfTheLibrary)
{
    SimSwitch sim = SimSwitch::make();
    EXPECT_EQ(nullptr, xpl_ZonesetCreate(std::string(65, 'x').c_str()));
    EXPECT_EQ(nullptr, xpl_ZoneCreate(nullptr));
    sim.failNext("xpl_ZoneCreate");
    EXPECT_EQ(nullptr, xpl_ZoneCreate("z"));
    xpl_Zone* zone = xpl_ZoneCreate("z");
    EXPECT_EQ(1u, sim.outstandingBlocks());
    sim.failNext("xpl_ZoneDestroy");
    xpl_ZoneDestroy(zone);
    xpl_ZonesetDestroy(nullptr);
    EXPECT_EQ(0u, sim.outstandingBlocks());
    const xpl_fzs_zonemember_type_e odd[] = {static_cast<xpl_fzs_zonemember_type_e>(4)};
    const xpl_fzs_zonemember_identifier_u identifier{};
    EXPECT_EQ(0, createZone("z"));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_fzsAddZoneMembers(hSwitch, "z", 1, odd, &identifier));
    EXPECT_EQ(XPL_INVALID_PARAMETER, xpl_fzsAddZoneMembers(hSwitch, "z", 1, nullptr, nullptr));
    EXPECT_EQ(0, xpl_fzsAddZoneMembers(hSwitch, "z", 0, nullptr, nullptr));
    sim.mark();
    sim.failNext("xpl_fzsDeleteZone", 1, 100);
    EXPECT_EQ(100, xpl_fzsDeleteZone(hSwitch, "z"));
    EXPECT_EQ(XPL_INVALID_HANDLE, xpl_fzsDeleteZone(nullptr, "z"));
    EXPECT_EQ(Texts{}, sim.writes());
    EXPECT_EQ(2u, sim.calls("xpl_fzsDeleteZone"));
}

struct Command
{
    const char* key; // after "Cmd.Zoning."
    int status;
};

TEST(ZoningEdit, CommandsChangeTheCopyOrSayWhyNot)
{
    const Command kCommands[] = {
        {"Zone.z2.AddZoneMember.host", 0},
        {"Zone.z2.AddZoneMember.host", 69},
        {"Zone.z2.AddZoneMember.abcdef", 0}, // the alias
        {"Zone.z2.AddZoneMember.ABCDEF", 0}, // the address
        {"Zone.z2.AddZoneMember.1:a", 69},
        {"Zone.z2.AddZoneMember.010A", 69},
        {"Zone.z2.AddZoneMember.010b", 0},
        {"Zone.z2.AddZoneMember.210002a5c0de00FF", 0},
        {"Zone.z2.AddZoneMember.000a", 9},
        {"Zone.z2.AddZoneMember.210002a5c0de00F", 9},
        {"Zone.z2.AddZoneMember.ghost", 162},
        {"Zone.z9.AddZoneMember.host", 162},
        {"Zone.9z.AddZoneMember.host", 9},
        {"Zone.z2.RemZoneMember.010b", 0},
        {"Zone.z2.RemZoneMember.010b", 162},
        {"Zone.z2.RemZoneMember.ghost", 162},
        {"Zone.z1.RemZoneMember.010300", 166},
        {"Zone.z1.RemZoneMember.host", 166},
        {"Zone.z1.RemZoneMember.1:1", 162},
        {"Alias.host.RemZoneMember.210002A5C0DE0003", 166},
        {"Alias.host.AddZoneMember.abcdef", 0}, // the address: aliases have no aliases
        {"Alias.host.AddZoneMember.ABCDEF", 69},
        {"Alias.host.AddZoneMember.ghost", 9},
        {"Alias.host.RemZoneMember.abcdef", 0},
        {"Alias.ghost.AddZoneMember.010300", 162},
        {"Alias.abcdef.Delete", 0},
        {"Alias.abcdef.Delete", 162},
        {"Alias.a b.Delete", 9},
        {"Zone.z2.Delete", 2},
    };
    SimSwitch sim = SimSwitch::make().zoning(sample());
    const std::string before = formatScenario(sim.scenario());
    for (const Command& one : kCommands)
        EXPECT_EQ(one.status == 2 ? 2 : 9, setKey(std::string("Cmd.Zoning.") + one.key))
            << "outside a session";
    ASSERT_EQ(0, getZoningEditMode());
    for (const Command& one : kCommands)
        EXPECT_EQ(one.status, setKey(std::string("Cmd.Zoning.") + one.key)) << one.key;
    EXPECT_EQ(before, formatScenario(sim.scenario()));
    EXPECT_EQ(0, saveZoningEdit());
    EXPECT_EQ((NamedLists{{"z1", {"host", "010300"}}, {"z2", {"1:A", "host", "ABCDEF", "210002A5C0DE00FF"}}}),
              sim.zoning().zones);
    EXPECT_EQ((NamedLists{{"host", {"210002A5C0DE0003"}}}), sim.zoning().aliases);
    EXPECT_EQ("database changed by edit session", sim.zoning().lastChange);
    EXPECT_EQ(0, xpl_fzsDeactivateZoneset(hSwitch));
    ASSERT_EQ(0, getZoningEditMode());
    EXPECT_EQ(0, setKey("Cmd.Zoning.Zone.z1.RemZoneMember.010300")) << "nothing is enforced any more";
}

TEST(ZoningEdit, HoldsTheAdministrativeModeUntilItEnds)
{
    SimSwitch sim = SimSwitch::make().zoning(sample());
    EXPECT_LT(saveZoningEdit(), 0);
    EXPECT_LT(cancelZoningEdit(), 0);
    const NamedLists before = sim.zoning().zones;
    struct End
    {
        const char* name;
        std::function<void()> act;
        bool saved;
    };
    const End kEnds[] = {
        {"save", [] { EXPECT_EQ(0, saveZoningEdit()); }, true},
        {"cancel", [] { EXPECT_EQ(0, cancelZoningEdit()); }, false},
        {"a save that fails",
         [&]
         {
             sim.failNext("saveZoningEdit");
             EXPECT_LT(saveZoningEdit(), 0);
         },
         false},
        {"a cancel that fails",
         [&]
         {
             sim.failNext("cancelZoningEdit");
             EXPECT_LT(cancelZoningEdit(), 0);
         },
         false},
        {"the owner goes", [&] { sim.adminOwnerGoes(); }, false},
    };
    for (const End& end : kEnds)
    {
        sim.open(SimSwitch::make().zoning(sample()).scenario());
        ASSERT_EQ(0, getZoningEditMode()) << end.name;
        EXPECT_LT(getZoningEditMode(), 0) << "there is one";
        EXPECT_EQ("edit session", sim.adminModeHolder());
        EXPECT_EQ(XPL_FZS_LOCKED, createZone("z3")) << "direct calls wait for our own, too";
        EXPECT_EQ(0, setKey("Cmd.Zoning.Zone.z2.AddZoneMember.1:b"));
        end.act();
        EXPECT_EQ("", sim.adminModeHolder()) << end.name;
        EXPECT_EQ(end.saved, before != sim.zoning().zones) << end.name;
        EXPECT_LT(saveZoningEdit(), 0) << end.name;
        EXPECT_EQ(9, setKey("Cmd.Zoning.Zone.z2.AddZoneMember.1:c")) << end.name;
    }
    sim.holdAdminMode("console");
    EXPECT_LT(getZoningEditMode(), 0);
    EXPECT_LT(saveZoningEdit(), 0);
    EXPECT_LT(cancelZoningEdit(), 0);
    EXPECT_EQ("console", sim.adminModeHolder()) << "ending no session does not release somebody else's";
    EXPECT_THROW(sim.holdAdminMode("other"), std::invalid_argument);
    sim.releaseAdminMode();
    EXPECT_THROW(sim.releaseAdminMode(), std::invalid_argument);
    sim.failNext("getZoningEditMode");
    EXPECT_LT(getZoningEditMode(), 0);
    EXPECT_EQ("", sim.adminModeHolder());
}

// Local 1 -- 2 -- 3, and 4 over an isolated link, 5 over one that is down.
SimSwitchSetup fabricOfFive()
{
    SimSwitchSetup setup = SimSwitch::make().zoning(sample());
    for (int domain = 2; domain <= 5; ++domain)
        setup.remote(domain, 2);
    return setup.isl({1, 0, 2, 0, false})
        .isl({2, 1, 3, 0, false})
        .isl({1, 1, 4, 0, true})
        .isl({1, 2, 5, 0, false});
}

Texts activeNames(const SimSwitch& sim)
{
    Texts names;
    for (int domain = 1; domain <= 5; ++domain)
        names.push_back(sim.activeZoneSetOf(domain).name);
    return names;
}

TEST(ZoningActivation, ReachesTheSwitchesThatAreLinked)
{
    Scenario scenario = fabricOfFive().scenario();
    scenario.switches.front().ports[2].link = LinkState::down;
    SimSwitch sim(scenario);
    EXPECT_EQ((Texts{"prod", "prod", "prod", "", ""}), activeNames(sim)) << "the one to start with";
    EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "other"));
    EXPECT_EQ((Texts{"other", "other", "other", "", ""}), activeNames(sim));
    EXPECT_EQ("activated by cim agent", sim.zoning().lastChange);
    sim.portDown(0);
    EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "prod"));
    EXPECT_EQ((Texts{"prod", "other", "other", "", ""}), activeNames(sim));
    sim.portUp(2);
    EXPECT_EQ((Texts{"prod", "other", "other", "", "prod"}), activeNames(sim)) << "it had none";
    sim.portUp(0);
    EXPECT_EQ((Texts{"prod", "other", "other", "", "prod"}), activeNames(sim)) << "they have one each";
    EXPECT_EQ(0, xpl_fzsDeactivateZoneset(hSwitch));
    EXPECT_EQ((Texts{"", "", "", "", ""}), activeNames(sim));
    EXPECT_EQ(XPL_FZS_NO_ACTIVE_ZONESET, xpl_fzsDeactivateZoneset(hSwitch));
    EXPECT_EQ("deactivated by cim agent", sim.zoning().lastChange);
    EXPECT_THROW(sim.activeZoneSetOf(6), std::invalid_argument);
    EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "prod"));
    sim.portDown(0);
    EXPECT_EQ(0, xpl_fzsDeactivateZoneset(hSwitch));
    sim.portUp(0);
    EXPECT_EQ((Texts{"prod", "prod", "prod", "", "prod"}), activeNames(sim))
        << "what was cut off brings it back";
    EXPECT_EQ("activated by fabric", sim.zoning().lastChange);
}

TEST(ZoningActivation, AJoiningSwitchTakesTheNearestSetAndOverwritesNone)
{
    Scenario scenario = fabricOfFive().scenario();
    SimSwitch sim(scenario);
    sim.portDown(0);
    EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "other"));
    sim.portUp(0);
    SwitchScenario joins = scenario.switches.back();
    joins.domain = 6;
    sim.addSwitch(joins);
    EXPECT_EQ("", sim.activeZoneSetOf(6).name);
    sim.addIsl({6, 0, 3, 1, false});
    EXPECT_EQ("prod", sim.activeZoneSetOf(6).name);
    EXPECT_EQ((Texts{"other", "prod", "prod", "", "other"}), activeNames(sim));
}

TEST(ZoningActivation, KeepsItsCopyWhateverBecomesOfTheConfiguredSet)
{
    SimSwitch sim = SimSwitch::make().zoning(sample());
    const NamedLists before = sim.zoning().active.zones;
    EXPECT_EQ((NamedLists{{"z1", {"210002A5C0DE0003", "010300"}}}), before);
    EXPECT_EQ(0, addMembers(xpl_fzsAddZoneMembers, "z1", {"010302"}));
    EXPECT_EQ(0, addMembers(xpl_fzsAddZoneAliasMembers, "host", {"010300", "010304"}));
    EXPECT_EQ(0, xpl_fzsAddZone(hSwitch, "z2", "prod"));
    EXPECT_EQ(before, sim.zoning().active.zones);
    EXPECT_EQ(0, xpl_fzsActivateZoneset(hSwitch, "prod"));
    EXPECT_EQ((NamedLists{{"z1", {"210002A5C0DE0003", "010300", "010304", "010302"}}, {"z2", {"1:A"}}}),
              sim.zoning().active.zones)
        << "aliases in their place, each member once";
    EXPECT_EQ(0, xpl_fzsRemoveZoneset(hSwitch, "prod"));
    EXPECT_EQ(0, xpl_fzsDeleteZone(hSwitch, "z1"));
    EXPECT_EQ((Texts{"z1", "z2"}), zonesOfSet("prod"));
    EXPECT_EQ("prod", valueOf("Oper.Zoning.ActiveZoneSet"));
}

} // namespace
