// The zoning library's reading calls, and the helpers of the switch server that read.
#include "platform/zoning_server.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"
#include "simulator/services/zoning_arguments.h"

#include <cstring>

namespace simulator
{
namespace
{

// Hands out what `list(const FabricModel&, Texts&)` lists; it returns a status.
template <class List>
int handOutNames(Call call, xpl_Handle handle, std::uint32_t* count, char** names, List list)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun != XPL_OK)
        return begun;
    if (count == nullptr || names == nullptr)
        return XPL_INVALID_PARAMETER;
    std::vector<std::string_view> listed;
    return Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const std::int32_t status = list(model, listed);
            if (status != XPL_OK)
                return status;
            char* block = nullptr;
            if (!allocateList(listed.size(), kZoneNameSize, block))
                return std::int32_t{XPL_UNREACHABLE};
            for (std::size_t i = 0; i < listed.size(); ++i)
                putName(listed[i], block + i * kZoneNameSize);
            *names = block;
            *count = static_cast<std::uint32_t>(listed.size());
            return std::int32_t{XPL_OK};
        });
}

template <class Elements>
void appendKeys(const Elements& elements, std::vector<std::string_view>& names)
{
    for (const auto& [age, one] : elements.elements())
        names.push_back(one.key);
}

// Hands out the keys of what `elements(const ZoningDatabase&)` returns.
template <class Elements>
int handOutConfigured(Call call, xpl_Handle handle, std::uint32_t* count, char** names, Elements elements)
{
    return handOutNames(call,
                        handle,
                        count,
                        names,
                        [elements](const FabricModel& model, std::vector<std::string_view>& listed)
                        {
                            appendKeys(elements(model.zoning().configured), listed);
                            return std::int32_t{XPL_OK};
                        });
}

// The configured zone, or the active one when only that has the name. Null when there is neither.
const Zone* zoneNamed(const FabricModel& model, std::string_view name)
{
    const Shared<Zone>* configured = model.zoning().configured.zones().find(name);
    if (configured != nullptr)
        return &**configured;
    const ActiveZoneSet* active = model.local().activeZoneSet.get();
    return active != nullptr ? active->zones.find(name) : nullptr;
}

struct MemberLists
{
    std::uint32_t* count;
    xpl_fzs_zonemember_type_e** types;
    xpl_fzs_zonemember_identifier_u** identifiers;
};

std::int32_t handOutMembers(const ZoneMembers& members, const MemberLists& lists)
{
    xpl_fzs_zonemember_type_e* types = nullptr;
    xpl_fzs_zonemember_identifier_u* identifiers = nullptr;
    if (!allocateList(members.size(), sizeof *types, types) ||
        !allocateList(members.size(), sizeof *identifiers, identifiers))
    {
        if (types != nullptr)
            freeBlock(types);
        return XPL_UNREACHABLE;
    }
    std::size_t i = 0;
    for (const auto& [age, member] : members.elements())
    {
        if (types == nullptr || identifiers == nullptr) // there are no lists of nothing
            break;
        types[i] = member.key.type;
        identifiers[i] = identifierOf(member.key);
        ++i;
    }
    *lists.count = static_cast<std::uint32_t>(members.size());
    *lists.types = types;
    *lists.identifiers = identifiers;
    return XPL_OK;
}

// Hands out the members that `find(const FabricModel&, std::string_view name)` finds; it may return null.
template <class Find>
int readMembers(Call call, xpl_Handle handle, const char* name, const MemberLists& lists, Find find)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun != XPL_OK)
        return begun;
    const std::int32_t fault = checkZoneName(nameOf(name));
    if (fault != XPL_OK || lists.count == nullptr || lists.types == nullptr || lists.identifiers == nullptr)
        return fault != XPL_OK ? fault : std::int32_t{XPL_INVALID_PARAMETER};
    return Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const ZoneMembers* members = find(model, nameOf(name));
            return members != nullptr ? handOutMembers(*members, lists) : std::int32_t{XPL_FZS_UNKNOWN_NAME};
        });
}

std::int32_t listZones(const FabricModel& model, std::string_view set, std::vector<std::string_view>& names)
{
    const std::int32_t fault = checkZoneName(set);
    if (fault != XPL_OK)
        return fault;
    const Shared<ZoneNames>* configured = model.zoning().configured.zoneSets().find(set);
    const ActiveZoneSet* active = model.local().activeZoneSet.get();
    if (configured != nullptr)
        appendKeys(**configured, names);
    else if (active != nullptr && active->name == set)
        appendKeys(active->zones, names);
    else
        return XPL_FZS_UNKNOWN_NAME;
    return XPL_OK;
}

std::int32_t readActiveName(char* name)
{
    return Engine::instance().read(
        [name](const FabricModel& model, std::uint64_t)
        {
            const ActiveZoneSet* active = model.local().activeZoneSet.get();
            putName(active != nullptr ? std::string_view(active->name) : std::string_view(), name);
            return active != nullptr ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_NO_ACTIVE_ZONESET};
        });
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" int xpl_fzsGetZonesetList(xpl_Handle handle, std::uint32_t* count, char** names)
{
    return handOutConfigured(
        Call::fzsGetZonesetList, handle, count, names, [](const ZoningDatabase& one) -> const auto& {
            return one.zoneSets();
        });
}

extern "C" int xpl_fzsGetZoneList(xpl_Handle handle, std::uint32_t* count, char** names)
{
    return handOutConfigured(
        Call::fzsGetZoneList, handle, count, names, [](const ZoningDatabase& one) -> const auto& {
            return one.zones();
        });
}

extern "C" int xpl_fzsGetZoneAliasList(xpl_Handle handle, std::uint32_t* count, char** names)
{
    return handOutConfigured(
        Call::fzsGetZoneAliasList, handle, count, names, [](const ZoningDatabase& one) -> const auto& {
            return one.aliases();
        });
}

extern "C" int
xpl_fzsGetZonesetZoneList(xpl_Handle handle, const char* zoneset, std::uint32_t* count, char** names)
{
    return handOutNames(Call::fzsGetZonesetZoneList,
                        handle,
                        count,
                        names,
                        [zoneset](const FabricModel& model, std::vector<std::string_view>& listed)
                        { return listZones(model, nameOf(zoneset), listed); });
}

extern "C" int xpl_fzsGetZoneType(xpl_Handle handle, const char* zone, std::int32_t* type)
{
    const std::int32_t begun = beginCall(Call::fzsGetZoneType, handle);
    if (begun != XPL_OK)
        return begun;
    const std::int32_t fault = checkZoneName(nameOf(zone));
    if (fault != XPL_OK || type == nullptr)
        return fault != XPL_OK ? fault : std::int32_t{XPL_INVALID_PARAMETER};
    return Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const Zone* found = zoneNamed(model, nameOf(zone));
            if (found == nullptr)
                return std::int32_t{XPL_FZS_UNKNOWN_NAME};
            *type = static_cast<std::int32_t>(found->type);
            return std::int32_t{XPL_OK};
        });
}

extern "C" int xpl_fzsGetZoneMemberList(xpl_Handle handle,
                                        const char* zone,
                                        std::uint32_t* count,
                                        xpl_fzs_zonemember_type_e** types,
                                        xpl_fzs_zonemember_identifier_u** identifiers)
{
    return readMembers(Call::fzsGetZoneMemberList,
                       handle,
                       zone,
                       {count, types, identifiers},
                       [](const FabricModel& model, std::string_view name)
                       {
                           const Zone* found = zoneNamed(model, name);
                           return found != nullptr ? &found->members : nullptr;
                       });
}

extern "C" int xpl_fzsGetZoneAliasMemberList(xpl_Handle handle,
                                             const char* alias,
                                             std::uint32_t* count,
                                             xpl_fzs_zonemember_type_e** types,
                                             xpl_fzs_zonemember_identifier_u** identifiers)
{
    return readMembers(Call::fzsGetZoneAliasMemberList,
                       handle,
                       alias,
                       {count, types, identifiers},
                       [](const FabricModel& model, std::string_view name)
                       { return model.zoning().configured.members(MemberHolder::alias, name); });
}

extern "C" int xpl_fzsGetActiveZonesetName(xpl_Handle handle, char* name)
{
    const std::int32_t begun = beginCall(Call::fzsGetActiveZonesetName, handle);
    if (begun != XPL_OK)
        return begun;
    return name != nullptr ? readActiveName(name) : std::int32_t{XPL_INVALID_PARAMETER};
}

extern "C" int xpl_fzsGetZoningLimitations(xpl_Handle handle, xpl_fzsZoningLimitations* limits)
{
    const std::int32_t begun = beginCall(Call::fzsGetZoningLimitations, handle);
    if (begun != XPL_OK)
        return begun;
    if (limits == nullptr)
        return XPL_INVALID_PARAMETER;
    const ZoningLimits held = Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                                      { return model.zoning().configured.limits(); });
    const auto counted = [](int count) { return static_cast<std::uint32_t>(count); };
    *limits = {counted(held.zoneSets),
               counted(held.zones),
               counted(held.zoneMembers),
               counted(held.zonesPerZoneSet),
               counted(held.aliases)};
    return XPL_OK;
}

void get_Active_ZoneSet(char* name)
{
    if (name == nullptr)
        return;
    putName({}, name);
    if (beginCall(Call::getActiveZoneSet) == XPL_OK)
        readActiveName(name);
}

void formatMemberId(const xpl_fzs_zonemember_type_e* types,
                    const xpl_fzs_zonemember_identifier_u* identifiers,
                    char* text,
                    std::uint32_t index)
{
    if (text == nullptr)
        return;
    putName({}, text);
    if (beginCall(Call::formatMemberId) != XPL_OK || types == nullptr || identifiers == nullptr)
        return;
    const auto member = memberOf(types[index], identifiers[index]);
    if (member)
        putName(memberText(*member), text);
}
