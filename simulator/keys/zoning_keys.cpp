// Keys of zoning: the default zone, the active zone set and its members.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

// The active zone set; an empty one when none is active.
const ActiveZoneSet& activeOf(const FabricModel& model)
{
    static const ActiveZoneSet none;
    const ActiveZoneSet* active = model.local().activeZoneSet.get();
    return active != nullptr ? *active : none;
}

std::string_view typeWord(const ZoneMember& member)
{
    switch (member.type)
    {
    case XPL_ZMT_NODEPORTNAME:
        return "WWN";
    case XPL_ZMT_DOMAINPORT:
        return "DomainPort";
    default:
        return "PortID";
    }
}

template <class Element>
std::int32_t tellZone(const Element* zone, Answer& answer)
{
    return zone != nullptr ? answer.text(zone->key) : std::int32_t{XPL_FZS_NO_MORE};
}

template <class Element>
std::int32_t tellMember(const Element* member, Answer& answer)
{
    return member != nullptr ? answer.text(lowerCase(memberText(member->key)))
                             : std::int32_t{XPL_FZS_NO_MORE};
}

// Wraps a reader of an active zone, whose name is the pattern's first argument.
template <class Read> // int32_t(const Zone& zone, Answer& answer)
ReadHandler ofActiveZone(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        const Zone* zone = activeOf(model).zones.find(arguments[0]);
        return zone != nullptr ? read(*zone, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

// The same of a member of it, the second argument.
template <class Read> // int32_t(const Zone& zone, const ZoneMember& member, Answer& answer)
ReadHandler ofActiveMember(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        const Zone* zone = activeOf(model).zones.find(arguments[0]);
        const auto member = memberOfText(arguments[1]);
        const bool known = zone != nullptr && member && zone->members.contains(*member);
        return known ? read(*zone, *member, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

void addActiveKeys(ReadKeys& keys)
{
    keys.add("Oper.Zoning.ActiveZoneSet",
             [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& a)
             { return a.text(activeOf(model).name); });
    keys.add("Oper.Zoning.ActiveZoneSet.FirstZone",
             [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& a)
             { return tellZone(activeOf(model).zones.first(), a); });
    keys.add("Oper.Zoning.ActiveZoneSet.NextZone.%s",
             [](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& a)
             {
                 const auto& zones = activeOf(model).zones;
                 return zones.contains(arguments[0]) ? tellZone(zones.after(arguments[0]), a)
                                                     : std::int32_t{XPL_UNKNOWN_KEY};
             });
    keys.add("Oper.Zoning.ActiveZone.%s.FirstZoneMember",
             ofActiveZone([](const Zone& zone, Answer& a) { return tellMember(zone.members.first(), a); }));
    keys.add("Oper.Zoning.ActiveZone.%s.NextZoneMember.%s",
             ofActiveMember([](const Zone& zone, const ZoneMember& member, Answer& a)
                            { return tellMember(zone.members.after(member), a); }));
    keys.add("Oper.Zoning.ActiveZone.%s.ZoneMember.%s.Type",
             ofActiveMember([](const Zone&, const ZoneMember& member, Answer& a)
                            { return a.text(typeWord(member)); }));
}

} // namespace

void addZoningKeys(ReadKeys& reads, WriteKeys& writes)
{
    reads.add("Config.Zoning.DefaultZone",
              [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& a)
              { return a.flag(model.zoning().defaultZone); });
    writes.add("Config.Zoning.DefaultZone.%*",
               [](FabricModel& model, const KeyArguments& arguments, std::uint64_t)
               {
                   const auto value = flagNamed(arguments[0]);
                   if (value)
                       model.setDefaultZone(*value);
                   return std::int32_t{value ? XPL_OK : XPL_INVALID_PARAMETER};
               });
    addActiveKeys(reads);
}

} // namespace simulator
