// What another administrator does to the zoning of the fabric, and to the administrative mode.
#include "platform/xpl_fzs.h"
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"

namespace simulator
{
namespace
{

constexpr std::string_view kAdministrator = "switchctl";

std::string reasonOf(std::int32_t status)
{
    switch (status)
    {
    case XPL_FZS_LOCKED:
        return "somebody has the administrative mode";
    case XPL_INVALID_PARAMETER:
        return "that is no name or member, or a zone set without zones";
    case XPL_INVALID_NAME:
        return "names have letters, digits and -_$^ and begin with a letter";
    case XPL_FZS_NAME_TAKEN:
        return "it is there already";
    case XPL_FZS_UNKNOWN_NAME:
        return "there is no such zone set, zone, alias or member";
    case XPL_FZS_MEMBER_EXISTS:
    case XPL_FZS_ALIAS_MEMBER_EXISTS:
        return "the member is there already";
    case XPL_FZS_LIMIT_REACHED:
        return "the database is full";
    case XPL_FZS_NO_ACTIVE_ZONESET:
        return "no zone set is active";
    default:
        return "it does not say why";
    }
}

void check(std::int32_t status)
{
    if (status != XPL_OK)
        throw Refusal("the switch refuses (status " + std::to_string(status) + "): " + reasonOf(status));
}

template <class Change> // int32_t(FabricModel& model, uint64_t now)
std::string change(Change one)
{
    check(Engine::instance().write(one));
    return {};
}

template <class Change> // int32_t(ZoningDatabase& configured)
std::string edit(Change one)
{
    return change([&one](FabricModel& model, std::uint64_t now)
                  { return model.changeZoning(kAdministrator, now, one); });
}

template <std::int32_t (ZoningDatabase::*CHANGE)(std::string_view)>
std::string named(const Words& values)
{
    return edit([&](ZoningDatabase& configured) { return (configured.*CHANGE)(values[0]); });
}

std::string addZone(const Words& values)
{
    return edit([&](ZoningDatabase& configured) { return configured.addZone(values[0], ZoneType::soft); });
}

std::string addToZoneSet(const Words& values)
{
    return edit([&](ZoningDatabase& configured) { return configured.addToZoneSet(values[1], values[0]); });
}

// A text that has the form of no member is the name of an alias.
ZoneMember memberNamed(const std::string& text)
{
    const auto member = memberOfText(text);
    return member ? *member : aliasMember(text);
}

template <MemberHolder KIND>
std::string addMember(const Words& values)
{
    return edit([&](ZoningDatabase& configured)
                { return configured.addMembers(KIND, values[0], {memberNamed(values[1])}); });
}

template <MemberHolder KIND>
std::string removeMember(const Words& values)
{
    return edit([&](ZoningDatabase& configured)
                { return configured.removeMember(KIND, values[0], memberNamed(values[1])); });
}

std::string activate(const Words& values)
{
    return change([&](FabricModel& model, std::uint64_t now)
                  { return model.activateZoneSet(values[0], kAdministrator, now); });
}

std::string deactivate(const Words&)
{
    return change([](FabricModel& model, std::uint64_t now)
                  { return model.deactivateZoneSet(kAdministrator, now); });
}

std::string hold(const Words& values)
{
    return change(
        [&](FabricModel& model, std::uint64_t)
        { return model.takeAdminMode(values[0]) ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_LOCKED}; });
}

std::string release(const Words&)
{
    return change(
        [](FabricModel& model, std::uint64_t)
        {
            model.abandonAdminMode();
            return std::int32_t{XPL_OK};
        });
}

} // namespace

std::vector<Verb> zoningVerbs()
{
    return {
        {"zoning add set NAME", "a zone set is created", named<&ZoningDatabase::addZoneSet>},
        {"zoning add zone NAME", "a zone is created", addZone},
        {"zoning add alias NAME", "an alias is created", named<&ZoningDatabase::addAlias>},
        {"zoning remove set NAME",
         "a zone set is deleted, its zones stay",
         named<&ZoningDatabase::removeZoneSet>},
        {"zoning remove zone NAME",
         "a zone is deleted, from all zone sets",
         named<&ZoningDatabase::deleteZone>},
        {"zoning remove alias NAME",
         "an alias is deleted, from all zones",
         named<&ZoningDatabase::deleteAlias>},
        {"zoning set NAME add ZONE", "a zone set gets a zone", addToZoneSet},
        {"zoning zone NAME add MEMBER",
         "a zone gets a WWN, address, 1:A or alias",
         addMember<MemberHolder::zone>},
        {"zoning zone NAME remove MEMBER", "a zone loses a member", removeMember<MemberHolder::zone>},
        {"zoning alias NAME add MEMBER",
         "an alias gets a WWN, address or 1:A",
         addMember<MemberHolder::alias>},
        {"zoning alias NAME remove MEMBER", "an alias loses a member", removeMember<MemberHolder::alias>},
        {"zoning activate NAME", "a zone set is put in force", activate},
        {"zoning deactivate", "none is in force", deactivate},
        {"zoning hold HOLDER", "somebody takes the administrative mode", hold},
        {"zoning release", "whoever has the administrative mode is gone", release},
    };
}

} // namespace simulator
