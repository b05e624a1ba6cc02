// Short forms of the zoning library's calls for tests.
#ifndef TESTS_SIMULATOR_ZONING_H
#define TESTS_SIMULATOR_ZONING_H

#include "platform/xpl_lib.h"
#include "platform/zoning_server.h"
#include "simulator/model/ZoneMember.h"
#include "tests/simulator/sml.h"

#include <functional>

using Texts = std::vector<std::string>;

// The names that a call lists; "status N" when it fails.
inline Texts namesFrom(const std::function<int(std::uint32_t*, char**)>& call)
{
    std::uint32_t count = 99;
    char* names = nullptr;
    const int status = call(&count, &names);
    if (status != 0)
        return {"status " + std::to_string(status)};
    Texts listed;
    for (std::uint32_t i = 0; i < count; ++i)
        listed.emplace_back(names + i * kZoneNameSize);
    xpl_libFreeMemory(names);
    return listed;
}

inline Texts namesFrom(int (*call)(xpl_Handle, std::uint32_t*, char**))
{
    return namesFrom([call](std::uint32_t* count, char** names) { return call(hSwitch, count, names); });
}

inline Texts zonesOfSet(const char* name)
{
    return namesFrom([name](std::uint32_t* count, char** names)
                     { return xpl_fzsGetZonesetZoneList(hSwitch, name, count, names); });
}

using ListMembers = int (*)(
    xpl_Handle, const char*, std::uint32_t*, xpl_fzs_zonemember_type_e**, xpl_fzs_zonemember_identifier_u**);

// Members as "TYPE TEXT".
inline Texts membersFrom(ListMembers call, const char* name)
{
    std::uint32_t count = 99;
    xpl_fzs_zonemember_type_e* types = nullptr;
    xpl_fzs_zonemember_identifier_u* identifiers = nullptr;
    const int status = call(hSwitch, name, &count, &types, &identifiers);
    if (status != 0)
        return {"status " + std::to_string(status)};
    Texts listed;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        char text[kZoneNameSize];
        formatMemberId(types, identifiers, text, i);
        listed.push_back(std::to_string(types[i]) + " " + text);
    }
    xpl_libFreeMemory(types);
    xpl_libFreeMemory(identifiers);
    return listed;
}

// What a First/Next walk finds, and the status with which it ends.
inline Texts keyWalk(const std::string& first, const std::string& next)
{
    Texts walk;
    std::string value = valueOf(first);
    for (; value.rfind("status ", 0) != 0; value = valueOf(next + value))
        walk.push_back(value);
    walk.push_back(value);
    return walk;
}

inline Texts activeMembers(const std::string& zone)
{
    const std::string key = "Oper.Zoning.ActiveZone." + zone;
    return keyWalk(key + ".FirstZoneMember", key + ".NextZoneMember.");
}

inline int addZoneSet(const char* name)
{
    xpl_Zoneset* zoneset = xpl_ZonesetCreate(name);
    const int status = xpl_fzsAddZoneset(hSwitch, zoneset);
    xpl_ZonesetDestroy(zoneset);
    return status;
}

inline int createZone(const char* name, std::int32_t type = XPL_ZT_SOFT)
{
    xpl_Zone* zone = xpl_ZoneCreate(name);
    const int set = xpl_ZoneSetType(zone, type);
    const int status = set == 0 || zone == nullptr ? xpl_fzsCreateZone(hSwitch, zone) : set;
    xpl_ZoneDestroy(zone);
    return status;
}

// Adds members by the library, each as text: of an alias's name, or of a form that every database knows.
using AddMembers = int (*)(xpl_Handle,
                           const char*,
                           std::uint32_t,
                           const xpl_fzs_zonemember_type_e*,
                           const xpl_fzs_zonemember_identifier_u*);

inline int addMembers(AddMembers call, const char* holder, const Texts& members)
{
    std::vector<xpl_fzs_zonemember_type_e> types;
    std::vector<xpl_fzs_zonemember_identifier_u> identifiers;
    for (const std::string& text : members)
    {
        const simulator::ZoneMember member =
            simulator::memberOfText(text).value_or(simulator::aliasMember(text));
        types.push_back(member.type);
        identifiers.push_back(identifierOf(member));
    }
    return call(
        hSwitch, holder, static_cast<std::uint32_t>(members.size()), types.data(), identifiers.data());
}

#endif
