// What a fabric enforces.
#include "simulator/model/ActiveZoneSet.h"

#include <algorithm>

namespace simulator
{
namespace
{

void addResolved(const ZoningDatabase& database, const ZoneMembers& from, ZoneMembers& to)
{
    for (const auto& [age, member] : from.elements())
        if (member.key.type == XPL_ZMT_ALIAS) // aliases have no aliases: one level
            addResolved(database, *database.members(MemberHolder::alias, member.key.alias), to);
        else
            to.add(member.key);
}

bool haveCommon(const ZoneMembers& a, const ZoneMembers& b)
{
    return std::any_of(a.elements().begin(),
                       a.elements().end(),
                       [&b](const auto& one) { return b.contains(one.second.key); });
}

} // namespace

ActiveZoneSet activeCopy(const ZoningDatabase& database, std::string_view zoneSet)
{
    ActiveZoneSet copy;
    copy.name = zoneSet;
    for (const auto& [age, name] : (*database.zoneSets().find(zoneSet))->elements())
    {
        const Zone& zone = **database.zones().find(name.key);
        Zone resolved;
        resolved.type = zone.type;
        addResolved(database, zone.members, resolved.members);
        copy.zones.add(name.key, std::move(resolved));
    }
    return copy;
}

bool isEnforcedBy(const ActiveZoneSet& active,
                  const ZoningDatabase& database,
                  MemberHolder kind,
                  std::string_view holder,
                  const ZoneMember& member)
{
    if (kind == MemberHolder::zone)
    {
        const Zone* zone = active.zones.find(holder);
        if (zone == nullptr)
            return false;
        if (member.type != XPL_ZMT_ALIAS)
            return zone->members.contains(member);
        const ZoneMembers* meant = database.members(MemberHolder::alias, member.alias);
        return meant != nullptr && haveCommon(*meant, zone->members);
    }
    const ZoneMember reference = aliasMember(holder);
    for (const auto& [age, zone] : active.zones.elements())
    {
        const ZoneMembers* configured = database.members(MemberHolder::zone, zone.key);
        if (configured != nullptr && configured->contains(reference) && zone.value.members.contains(member))
            return true;
    }
    return false;
}

} // namespace simulator
