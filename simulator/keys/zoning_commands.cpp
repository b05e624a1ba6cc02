// Commands of the zoning edit session.
#include "simulator/keys/attribute_keys.h"

namespace simulator
{
namespace
{

// What a refusal of the database is to somebody who gave a command.
std::int32_t commandStatus(std::int32_t status)
{
    switch (status)
    {
    case XPL_INVALID_NAME:
        return XPL_INVALID_PARAMETER;
    case XPL_FZS_MEMBER_EXISTS:
    case XPL_FZS_ALIAS_MEMBER_EXISTS:
        return XPL_FZS_EXISTS_ALREADY;
    default:
        return status;
    }
}

// Stores the member that the text names for a holder of the kind. Aliases have no aliases.
std::int32_t
readMember(const ZoningDatabase& database, MemberHolder kind, std::string_view text, ZoneMember& member)
{
    const bool aliasTaken = kind == MemberHolder::zone;
    const auto plain = memberOfText(text);
    if (aliasTaken && database.aliases().contains(text))
        member = aliasMember(text);
    else if (plain)
        member = *plain;
    else
        return aliasTaken && checkZoneName(text) == XPL_OK ? std::int32_t{XPL_FZS_UNKNOWN_NAME}
                                                           : std::int32_t{XPL_INVALID_PARAMETER};
    return XPL_OK;
}

// A command on a member, the pattern's second argument, of a zone or alias, its first one.
using MemberCommand = std::int32_t (*)(FabricModel& model,
                                       MemberHolder kind,
                                       std::string_view holder,
                                       const ZoneMember& member);

std::int32_t
addMember(FabricModel& model, MemberHolder kind, std::string_view holder, const ZoneMember& member)
{
    return model.zoningEdit()->addMembers(kind, holder, {member});
}

std::int32_t
removeMember(FabricModel& model, MemberHolder kind, std::string_view holder, const ZoneMember& member)
{
    ZoningDatabase& database = *model.zoningEdit();
    const ZoneMembers* present = database.members(kind, holder);
    const ActiveZoneSet* active = model.local().activeZoneSet.get();
    if (present != nullptr && present->contains(member) && active != nullptr &&
        isEnforcedBy(*active, database, kind, holder, member))
        return XPL_FZS_ACTIVE_MEMBER;
    return database.removeMember(kind, holder, member);
}

WriteHandler onMember(MemberHolder kind, MemberCommand command)
{
    return [kind, command](FabricModel& model, const KeyArguments& arguments, std::uint64_t)
    {
        if (model.zoningEdit() == nullptr || checkZoneName(arguments[0]) != XPL_OK)
            return std::int32_t{XPL_INVALID_PARAMETER};
        ZoneMember member;
        const std::int32_t fault = readMember(*model.zoningEdit(), kind, arguments[1], member);
        return commandStatus(fault != XPL_OK ? fault : command(model, kind, arguments[0], member));
    };
}

} // namespace

void addZoningCommands(WriteKeys& writes)
{
    writes.add("Cmd.Zoning.Zone.%s.AddZoneMember.%s", onMember(MemberHolder::zone, addMember));
    writes.add("Cmd.Zoning.Zone.%s.RemZoneMember.%s", onMember(MemberHolder::zone, removeMember));
    writes.add("Cmd.Zoning.Alias.%s.AddZoneMember.%s", onMember(MemberHolder::alias, addMember));
    writes.add("Cmd.Zoning.Alias.%s.RemZoneMember.%s", onMember(MemberHolder::alias, removeMember));
    writes.add("Cmd.Zoning.Alias.%s.Delete",
               [](FabricModel& model, const KeyArguments& arguments, std::uint64_t)
               {
                   ZoningDatabase* pending = model.zoningEdit();
                   return pending != nullptr ? commandStatus(pending->deleteAlias(arguments[0]))
                                             : std::int32_t{XPL_INVALID_PARAMETER};
               });
}

} // namespace simulator
