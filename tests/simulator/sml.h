// Short forms of platform calls for tests: attributes, configuration records, walks.
#ifndef TESTS_SIMULATOR_SML_H
#define TESTS_SIMULATOR_SML_H

#include "platform/data_cache.h"
#include "platform/switch_config.h"
#include "platform/switch_server.h"
#include "platform/xpl_sml.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// What an action complains of.
template <class Action>
std::string errorFrom(Action action)
{
    try
    {
        action();
    }
    catch (const std::exception& error)
    {
        return error.what();
    }
    return "no error";
}

inline std::vector<xpl_smlEntry> batchOf(const std::vector<std::string>& keys)
{
    std::vector<xpl_smlEntry> entries(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
    {
        std::memset(&entries[i], 0x5A, sizeof entries[i]); // the switch must set value and status
        std::strncpy(entries[i].key, keys[i].c_str(), kXplSmlTextSize - 1);
        entries[i].key[kXplSmlTextSize - 1] = '\0';
    }
    return entries;
}

inline int getBatch(std::vector<xpl_smlEntry>& entries)
{
    return xpl_smlGetBatch(hSwitch, entries.data(), static_cast<std::uint32_t>(entries.size()));
}

// The value of one key; "status N" when it has none.
inline std::string valueOf(const std::string& key)
{
    char value[kXplSmlTextSize] = "untouched";
    std::int32_t error = -1;
    const int status = xpl_smlGetV(hSwitch, value, &error, "%s", key.c_str());
    return status == 0 && error == 0 ? value : "status " + std::to_string(status);
}

// The local ports in the order of the walk.
inline std::vector<std::string> portWalk()
{
    std::vector<std::string> walk;
    DataCache* cache = DataCache::instance();
    for (std::string index = cache->getFirstRootPortIndex(); !index.empty();
         index = cache->getNextRootPortIndex(index))
        walk.push_back(index);
    return walk;
}

// The switches of the fabric in the order of the walk.
inline std::vector<SwitchCache*> switchWalk()
{
    std::vector<SwitchCache*> walk;
    const FabricCache* fabric = DataCache::instance()->getFabric(1);
    for (SwitchCache* one = fabric->getFirstSwitch(); one != nullptr; one = fabric->getNextSwitch(one))
        walk.push_back(one);
    return walk;
}

// The addresses attached to a domain, as the switch server walks them.
inline std::vector<std::string> attachedTo(const std::string& domain)
{
    std::vector<std::string> addresses;
    char address[kAttachedPortAddressSize];
    for (int next = get_first_attached_port(domain.c_str(), address); next != 0;
         next = get_next_attached_port(domain.c_str(), next, address))
        addresses.emplace_back(address);
    return addresses;
}

inline std::uint64_t counterOf(int port, const std::string& name)
{
    return std::strtoull(
        valueOf("Oper.UserPort.0." + std::to_string(port) + ".C64." + name).c_str(), nullptr, 16);
}

inline std::uint64_t rateOf(int port, const std::string& name)
{
    return std::strtoull(
        valueOf("Oper.UserPort.0." + std::to_string(port) + "." + name).c_str(), nullptr, 10);
}

inline int setKey(const std::string& key)
{
    std::int32_t error = -1;
    const int status = xpl_smlSetV(hSwitch, &error, "%s", key.c_str());
    return status == error ? status : -1;
}

inline xpl_swSwitchConfig switchRecord()
{
    xpl_swSwitchConfig record;
    std::memset(&record, 0xEE, sizeof record);
    EXPECT_EQ(0, xpl_swSwitchGetConfig(hSwitch, 0, &record));
    return record;
}

inline xpl_swPortConfig portRecord(int port)
{
    xpl_swPortConfig record;
    std::memset(&record, 0xEE, sizeof record);
    EXPECT_EQ(0, xpl_swPortGetConfig(hSwitch, port, 0, &record));
    return record;
}

#endif
