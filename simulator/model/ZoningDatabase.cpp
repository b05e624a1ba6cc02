// A zoning database as administrators edit it.
#include "simulator/model/ZoningDatabase.h"

#include <algorithm>
#include <set>

namespace simulator
{
namespace
{

static_assert(kMaxZoneNameSize + 1 == kZoneNameSize, "a name and its terminator");

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isNameCharacter(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') ||
           std::string_view("-_$^").find(c) != std::string_view::npos;
}

// 0 when a name can be taken for a new element.
template <class Elements>
std::int32_t checkNewName(const Elements& elements, std::string_view name, int limit)
{
    const std::int32_t fault = checkZoneName(name);
    if (fault != XPL_OK)
        return fault;
    if (elements.contains(name))
        return XPL_FZS_NAME_TAKEN;
    return elements.size() < static_cast<std::size_t>(limit) ? std::int32_t{XPL_OK}
                                                             : std::int32_t{XPL_FZS_LIMIT_REACHED};
}

// 0 when there is an element of the name.
template <class Elements>
std::int32_t checkKnownName(const Elements& elements, std::string_view name)
{
    const std::int32_t fault = checkZoneName(name);
    if (fault != XPL_OK)
        return fault;
    return elements.contains(name) ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_UNKNOWN_NAME};
}

template <class Elements, class... Value>
std::int32_t addNamed(Elements& elements, std::string_view name, int limit, Value... value)
{
    const std::int32_t fault = checkNewName(elements, name, limit);
    if (fault == XPL_OK)
        elements.add(std::string(name), std::move(value)...);
    return fault;
}

} // namespace

std::int32_t checkZoneName(std::string_view name)
{
    if (name.empty() || name.size() > kMaxZoneNameSize)
        return XPL_INVALID_PARAMETER;
    const bool allowed = isLetter(name.front()) && std::all_of(name.begin(), name.end(), isNameCharacter);
    return allowed ? std::int32_t{XPL_OK} : std::int32_t{XPL_INVALID_NAME};
}

const ZoneMembers* ZoningDatabase::members(MemberHolder kind, std::string_view holder) const
{
    if (kind == MemberHolder::zone)
    {
        const Shared<Zone>* zone = _zones.find(holder);
        return zone != nullptr ? &(*zone)->members : nullptr;
    }
    const Shared<ZoneMembers>* alias = _aliases.find(holder);
    return alias != nullptr ? &**alias : nullptr;
}

ZoneMembers* ZoningDatabase::ownMembers(MemberHolder kind, std::string_view holder)
{
    return kind == MemberHolder::zone ? &_zones.find(holder)->own().members : &_aliases.find(holder)->own();
}

std::int32_t ZoningDatabase::addZoneSet(std::string_view name)
{
    return addNamed(_zoneSets, name, _limits.zoneSets);
}

std::int32_t ZoningDatabase::removeZoneSet(std::string_view name)
{
    const std::int32_t fault = checkKnownName(_zoneSets, name);
    if (fault == XPL_OK)
        _zoneSets.remove(name);
    return fault;
}

std::int32_t ZoningDatabase::addZone(std::string_view name, ZoneType type)
{
    Zone zone;
    zone.type = type;
    return addNamed(_zones, name, _limits.zones, Shared<Zone>(std::move(zone)));
}

std::int32_t ZoningDatabase::deleteZone(std::string_view name)
{
    const std::int32_t fault = checkKnownName(_zones, name);
    if (fault != XPL_OK)
        return fault;
    for (const auto& [age, set] : _zoneSets.elements())
        if (set.value->contains(name))
            _zoneSets.find(set.key)->own().remove(name);
    _zoneMembers -= (*_zones.find(name))->members.size();
    _zones.remove(name);
    return XPL_OK;
}

std::int32_t ZoningDatabase::addAlias(std::string_view name)
{
    return addNamed(_aliases, name, _limits.aliases);
}

std::int32_t ZoningDatabase::deleteAlias(std::string_view name)
{
    const std::int32_t fault = checkKnownName(_aliases, name);
    if (fault != XPL_OK)
        return fault;
    const ZoneMember reference = aliasMember(name);
    for (const auto& [age, zone] : _zones.elements())
        if (zone.value->members.contains(reference))
            removeMember(MemberHolder::zone, zone.key, reference);
    _aliases.remove(name);
    return XPL_OK;
}

std::int32_t ZoningDatabase::addToZoneSet(std::string_view zone, std::string_view zoneSet)
{
    const std::int32_t zoneFault = checkKnownName(_zones, zone);
    const std::int32_t setFault = checkKnownName(_zoneSets, zoneSet);
    if (zoneFault != XPL_OK || setFault != XPL_OK)
        return zoneFault != XPL_OK ? zoneFault : setFault;
    Shared<ZoneNames>& set = *_zoneSets.find(zoneSet);
    const std::int32_t fault = checkNewName(*set, zone, _limits.zonesPerZoneSet);
    if (fault == XPL_OK)
        set.own().add(std::string(zone));
    return fault;
}

std::int32_t
ZoningDatabase::checkMember(MemberHolder kind, const ZoneMembers& present, const ZoneMember& member) const
{
    const bool inZone = kind == MemberHolder::zone;
    if (!isPossible(member) || (member.type == XPL_ZMT_ALIAS && !inZone))
        return XPL_INVALID_PARAMETER;
    if (member.type == XPL_ZMT_ALIAS)
    {
        const std::int32_t fault = checkKnownName(_aliases, member.alias);
        if (fault != XPL_OK)
            return fault;
    }
    if (present.contains(member))
        return inZone ? XPL_FZS_MEMBER_EXISTS : XPL_FZS_ALIAS_MEMBER_EXISTS;
    return XPL_OK;
}

std::int32_t
ZoningDatabase::addMembers(MemberHolder kind, std::string_view holder, const std::vector<ZoneMember>& members)
{
    const bool toZone = kind == MemberHolder::zone;
    std::int32_t fault = toZone ? checkKnownName(_zones, holder) : checkKnownName(_aliases, holder);
    if (fault != XPL_OK)
        return fault;
    const ZoneMembers& present = *this->members(kind, holder);
    std::set<ZoneMember> fresh;
    for (const ZoneMember& member : members)
    {
        fault = checkMember(kind, present, member);
        if (fault == XPL_OK && !fresh.insert(member).second)
            fault = toZone ? XPL_FZS_MEMBER_EXISTS : XPL_FZS_ALIAS_MEMBER_EXISTS;
        if (fault != XPL_OK)
            return fault;
    }
    if (toZone && _zoneMembers + members.size() > static_cast<std::size_t>(_limits.zoneMembers))
        return XPL_FZS_LIMIT_REACHED;
    ZoneMembers& grown = *ownMembers(kind, holder);
    for (const ZoneMember& member : members)
        grown.add(member);
    _zoneMembers += toZone ? members.size() : 0;
    return XPL_OK;
}

std::int32_t
ZoningDatabase::removeMember(MemberHolder kind, std::string_view holder, const ZoneMember& member)
{
    const ZoneMembers* present = members(kind, holder);
    if (present == nullptr || !present->contains(member))
        return XPL_FZS_UNKNOWN_NAME;
    ownMembers(kind, holder)->remove(member);
    _zoneMembers -= kind == MemberHolder::zone ? 1 : 0;
    return XPL_OK;
}

} // namespace simulator
