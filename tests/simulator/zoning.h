// Short forms of the zoning library's calls for tests.
#ifndef TESTS_SIMULATOR_ZONING_H
#define TESTS_SIMULATOR_ZONING_H

#include "platform/xpl_lib.h"
#include "platform/zoning_server.h"
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

#endif
