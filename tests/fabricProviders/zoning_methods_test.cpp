// Holds the methods of the zoning service and the deletions to zoning_methods.txt.
#include "platform/xpl_fzs.h"
#include "simulator/scenario/scenario_json.h"
#include "switchaccess/Zoning_Edit.h"
#include "tests/common/testing/requests.h"
#include "tests/fabricProviders/Zoning.h"

namespace cimple
{
namespace
{

std::optional<uint16> number(const std::string& text)
{
    return text == "null" ? std::nullopt : std::optional<uint16>(std::stoi(text));
}
std::optional<bool> flag(const std::string& text)
{
    return text == "null" ? std::nullopt : std::optional<bool>(text == "true");
}

typedef std::string (*Call)(Service& service, const Cells& arguments);
const std::map<std::string, Call> kCalls = {
    {"ActivateZoneSet", [](Service& to, const Cells& a) { return to.activate(a.at(0), flag(a.at(1))); }},
    {"CreateZoneSet", [](Service& to, const Cells& a) { return to.createZoneSet(a.at(0)); }},
    {"CreateZone", [](Service& to, const Cells& a) { return to.createZone(a.at(0), number(a.at(1))); }},
    {"CreateZoneAlias", [](Service& to, const Cells& a) { return to.createAlias(a.at(0)); }},
    {"AddZone", [](Service& to, const Cells& a) { return to.addZone(a.at(0), a.at(1)); }},
    {"AddZoneAlias", [](Service& to, const Cells& a) { return to.addAlias(a.at(0), a.at(1)); }},
    {"CreateMemberOfZone",
     [](Service& to, const Cells& a)
     { return to.createMember<VRAX_Zone>(number(a.at(0)), a.at(1), a.at(2)); }},
    {"CreateMemberOfAlias",
     [](Service& to, const Cells& a)
     { return to.createMember<VRAX_ZoneAlias>(number(a.at(0)), a.at(1), a.at(2)); }},
    {"AddMemberToZone",
     [](Service& to, const Cells& a) { return to.addMember<VRAX_Zone>(a.at(0), a.at(1)); }},
    {"AddMemberToAlias",
     [](Service& to, const Cells& a) { return to.addMember<VRAX_ZoneAlias>(a.at(0), a.at(1)); }},
    {"DeleteZoneSet", [](Service&, const Cells& a) { return remove<VRAX_ZoneSet>(a.at(0)); }},
    {"DeleteZone", [](Service&, const Cells& a) { return remove<VRAX_Zone>(a.at(0)); }},
    {"DeleteZoneAlias", [](Service&, const Cells& a) { return remove<VRAX_ZoneAlias>(a.at(0)); }},
    {"DeleteMember", [](Service&, const Cells& a) { return remove<VRAX_ZoneMembership>(a.at(0)); }},
};

std::string run(std::string text)
{
    const bool isOther = text.rfind("other ", 0) == 0;
    text.erase(0, isOther ? std::strlen("other ") : 0);
    const std::size_t blank = text.find(' ');
    Cells arguments;
    for (std::size_t from = blank + 1, to = 0; to != text.npos; from = to + 2)
    {
        to = text.find(", ", from);
        arguments.push_back(text.substr(from, to == text.npos ? to : to - from));
    }
    Service service(isOther ? "200002a5c0de0001" : kLocalWwn);
    return kCalls.at(text.substr(0, blank))(service, arguments);
}

class Zoning_Methods : public Zoning
{
  protected:
    // How the switch is when a request comes.
    void bring(const std::string& state)
    {
        const auto fails = [&](providerEnum_t map, const char* call)
        {
            VRAX_Maps::getInstance()->InstMapForceUnload(map);
            sim.failNext(call);
        };
        if (state == "held")
            sim.holdAdminMode("console");
        else if (state == "service stale")
            fails(Map_Index<VRAX_ZoningService>::value, "get_Local_Switch_World_Wide_Name");
        else if (state == "zones stale")
            fails(Map_Index<VRAX_Zone>::value, "xpl_fzsGetZoneList");
        else if (state == "aliases stale")
            fails(Map_Index<VRAX_ZoneAlias>::value, "xpl_fzsGetZoneAliasList");
        else if (state == "none active")
            xpl_fzsDeactivateZoneset(hSwitch);
        else if (state == "save fails")
            sim.failNext("saveZoningEdit");
        else if (state == "command fails")
            sim.failNext("Cmd.Zoning.");
        else if (state == "alias gone")
        {
            Zoning_Edit edit;
            EXPECT_EQ(edit.command("Cmd.Zoning.Alias.lone.Delete", {}), 0);
            EXPECT_TRUE(edit.save());
            VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_ZoneAlias>::value);
        }
        else
            EXPECT_EQ(state, "ready");
    }
};

TEST_F(Zoning_Methods, DoAsTheTableSays)
{
    for (const Cells& row : readRequests(ZONING_METHODS, 4, kLocalWwn))
    {
        const std::string &call = row[0], &state = row[1];
        SCOPED_TRACE(call + ", " + state);
        SetUp();
        bring(state);
        const std::string before = formatScenario(sim.scenario());
        std::string result;
        std::string lines = logged([&] { result = run(call); });
        EXPECT_EQ(result, row[2]);
        // AddZone begins with where its arguments are in memory.
        if (lines.find("[\nZoningService =") == 0)
            lines.erase(0, lines.find("]", lines.find("[\nZone =")) + 1);
        EXPECT_EQ(lines, row[3]);
        if (row[2] != "0 0" && row[2] != "0")
            EXPECT_EQ(formatScenario(sim.scenario()), before) << "what fails changes nothing";
        EXPECT_EQ(sim.adminModeHolder(), state == "held" ? "console" : "");
        EXPECT_EQ(sim.outstandingBlocks(), 0U);
    }
}

} // namespace
} // namespace cimple
