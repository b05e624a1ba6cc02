// The zoning databases from the facts of a scenario and back.
#include "simulator/model/zoning_scenario.h"

#include "simulator/model/hex.h"
#include "simulator/scenario/Scenario.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace simulator
{
namespace
{

// A copy may have more members than the database that it was made of: each of an alias counts by itself.
constexpr int kAny = std::numeric_limits<int>::max();
constexpr ZoningLimits kNoLimits{kAny, kAny, kAny, kAny, kAny};

std::string element(const std::string& list, std::size_t index)
{
    return list + "/" + std::to_string(index);
}

// Turns a status into the message for what stands at `place`.
void expectTaken(std::int32_t status, const std::string& place, const std::string& what)
{
    const std::string quoted = "\"" + what + "\"";
    switch (status)
    {
    case XPL_OK:
        return;
    case XPL_FZS_UNKNOWN_NAME:
        throw ScenarioError(place, "there is no " + quoted);
    case XPL_FZS_NAME_TAKEN:
    case XPL_FZS_MEMBER_EXISTS:
    case XPL_FZS_ALIAS_MEMBER_EXISTS:
        throw ScenarioError(place, quoted + " appears twice");
    case XPL_FZS_LIMIT_REACHED:
        throw ScenarioError(place, quoted + " is more than the limits allow");
    default:
        throw ScenarioError(place,
                            "expected a name of 1 to 64 letters, digits and \"-_$^\" that begins with a "
                            "letter, got " +
                                quoted);
    }
}

ZoneMember memberAt(const ZoneMemberScenario& facts, MemberHolder kind, const std::string& place)
{
    const bool aliasTaken = kind == MemberHolder::zone;
    const int forms = (facts.wwn ? 1 : 0) + (facts.address ? 1 : 0) + (facts.domain || facts.port ? 1 : 0) +
                      (facts.alias ? 1 : 0);
    if (forms != 1 || facts.domain.has_value() != facts.port.has_value() || (facts.alias && !aliasTaken))
    {
        throw ScenarioError(place,
                            std::string("expected one of wwn, address, domain with port") +
                                (aliasTaken ? ", alias" : ""));
    }
    if (facts.wwn)
    {
        std::uint64_t wwn = 0;
        parseHex(*facts.wwn, wwn);
        return wwnMember(wwn);
    }
    if (facts.address)
        return addressMember(*facts.address);
    return facts.alias ? aliasMember(*facts.alias) : portMember(*facts.domain, *facts.port);
}

void addMembers(ZoningDatabase& database,
                MemberHolder kind,
                const std::string& holder,
                const std::vector<ZoneMemberScenario>& members,
                const std::string& list)
{
    for (std::size_t i = 0; i < members.size(); ++i)
    {
        const std::string place = element(list, i);
        const ZoneMember member = memberAt(members[i], kind, place);
        expectTaken(database.addMembers(kind, holder, {member}), place, memberText(member));
    }
}

void addZones(ZoningDatabase& database, const std::vector<ZoneScenario>& zones, const std::string& list)
{
    for (std::size_t i = 0; i < zones.size(); ++i)
    {
        const std::string place = element(list, i);
        expectTaken(database.addZone(zones[i].name, zones[i].type), place + "/name", zones[i].name);
        addMembers(database, MemberHolder::zone, zones[i].name, zones[i].members, place + "/members");
    }
}

ZoneMemberScenario factsOf(const ZoneMember& member)
{
    ZoneMemberScenario facts;
    switch (member.type)
    {
    case XPL_ZMT_NODEPORTNAME:
        facts.wwn = hexOf(member.number, 16);
        break;
    case XPL_ZMT_DOMAINPORT:
        facts.domain = static_cast<int>(member.number >> 8);
        facts.port = static_cast<int>(member.number & 0xFF);
        break;
    case XPL_ZMT_NODEPORTID:
        facts.address = static_cast<std::uint32_t>(member.number);
        break;
    case XPL_ZMT_ALIAS:
        facts.alias = member.alias;
        break;
    }
    return facts;
}

std::vector<ZoneMemberScenario> factsOf(const ZoneMembers& members)
{
    std::vector<ZoneMemberScenario> facts;
    for (const auto& [age, member] : members.elements())
        facts.push_back(factsOf(member.key));
    return facts;
}

bool areEqual(const ZoneMembers& a, const ZoneMembers& b)
{
    const auto equal = [](const auto& one, const auto& other) { return one.second.key == other.second.key; };
    return a.size() == b.size() &&
           std::equal(a.elements().begin(), a.elements().end(), b.elements().begin(), equal);
}

bool areEqual(const ActiveZoneSet& a, const ActiveZoneSet& b)
{
    const auto equal = [](const auto& one, const auto& other)
    {
        const auto& zone = one.second;
        const auto& same = other.second;
        return zone.key == same.key && zone.value.type == same.value.type &&
               areEqual(zone.value.members, same.value.members);
    };
    return a.zones.size() == b.zones.size() &&
           std::equal(
               a.zones.elements().begin(), a.zones.elements().end(), b.zones.elements().begin(), equal);
}

} // namespace

ZoningDatabase databaseOf(const ZoningScenario& facts)
{
    ZoningDatabase database(facts.limits);
    for (std::size_t i = 0; i < facts.aliases.size(); ++i)
    {
        const ZoneAliasScenario& alias = facts.aliases[i];
        const std::string place = element("/zoning/aliases", i);
        expectTaken(database.addAlias(alias.name), place + "/name", alias.name);
        addMembers(database, MemberHolder::alias, alias.name, alias.members, place + "/members");
    }
    addZones(database, facts.zones, "/zoning/zones");
    for (std::size_t i = 0; i < facts.zoneSets.size(); ++i)
    {
        const ZoneSetScenario& set = facts.zoneSets[i];
        const std::string place = element("/zoning/zoneSets", i);
        expectTaken(database.addZoneSet(set.name), place + "/name", set.name);
        for (std::size_t j = 0; j < set.zones.size(); ++j)
        {
            expectTaken(
                database.addToZoneSet(set.zones[j], set.name), element(place + "/zones", j), set.zones[j]);
        }
    }
    return database;
}

std::optional<ActiveZoneSet> activeSetOf(const ZoningScenario& facts, const ZoningDatabase& database)
{
    if (facts.active && facts.activeSet)
        throw ScenarioError("/zoning/activeSet", "expected either active or activeSet");
    if (facts.active)
    {
        const Shared<ZoneNames>* set = database.zoneSets().find(*facts.active);
        if (set == nullptr || (*set)->empty())
        {
            throw ScenarioError("/zoning/active",
                                "expected the name of a zone set with zones, got \"" + *facts.active + "\"");
        }
        return activeCopy(database, *facts.active);
    }
    if (!facts.activeSet)
        return std::nullopt;
    // A copy has the form of a database with one zone set and no aliases.
    const std::string place = "/zoning/activeSet";
    if (facts.activeSet->zones.empty())
        throw ScenarioError(place + "/zones", "expected at least one zone");
    ZoningDatabase copied(kNoLimits);
    expectTaken(copied.addZoneSet(facts.activeSet->name), place + "/name", facts.activeSet->name);
    addZones(copied, facts.activeSet->zones, place + "/zones");
    for (std::size_t i = 0; i < facts.activeSet->zones.size(); ++i)
    {
        const std::string& name = facts.activeSet->zones[i].name;
        expectTaken(copied.addToZoneSet(name, facts.activeSet->name), element(place + "/zones", i), name);
    }
    return activeCopy(copied, facts.activeSet->name);
}

ZoningScenario zoningScenarioOf(const ZoningDatabase& database, const ActiveZoneSet* active, bool defaultZone)
{
    ZoningScenario facts;
    facts.defaultZone = defaultZone;
    facts.limits = database.limits();
    for (const auto& [age, alias] : database.aliases().elements())
        facts.aliases.push_back({alias.key, factsOf(*alias.value)});
    for (const auto& [age, zone] : database.zones().elements())
        facts.zones.push_back({zone.key, zone.value->type, factsOf(zone.value->members)});
    for (const auto& [age, set] : database.zoneSets().elements())
    {
        facts.zoneSets.push_back({set.key, {}});
        for (const auto& [zoneAge, zone] : set.value->elements())
            facts.zoneSets.back().zones.push_back(zone.key);
    }
    if (active == nullptr)
        return facts;
    const Shared<ZoneNames>* configured = database.zoneSets().find(active->name);
    if (configured != nullptr && areEqual(activeCopy(database, active->name), *active))
    {
        facts.active = active->name;
        return facts;
    }
    facts.activeSet.emplace().name = active->name;
    for (const auto& [age, zone] : active->zones.elements())
        facts.activeSet->zones.push_back({zone.key, zone.value.type, factsOf(zone.value.members)});
    return facts;
}

} // namespace simulator
