// The zoning that a scenario starts with: the configured database and what is active.
#ifndef SIMULATOR_SCENARIO_ZONINGSCENARIO_H
#define SIMULATOR_SCENARIO_ZONINGSCENARIO_H

#include "simulator/model/names.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulator
{

constexpr std::size_t kMaxZoneNameSize = 64;

// How many of each the database can hold. These are also the most that a scenario can ask for.
struct ZoningLimits
{
    int zoneSets = 256;
    int zones = 2000;
    int zoneMembers = 30000; // of all zones together
    int zonesPerZoneSet = 2000;
    int aliases = 2500;
};

// One of: a WWN, an address, a domain with a port, an alias.
struct ZoneMemberScenario
{
    std::optional<std::string> wwn;
    std::optional<std::uint32_t> address;
    std::optional<int> domain;
    std::optional<int> port;
    std::optional<std::string> alias;
};

struct ZoneAliasScenario
{
    std::string name;
    std::vector<ZoneMemberScenario> members;
};

struct ZoneScenario
{
    std::string name;
    ZoneType type = ZoneType::soft;
    std::vector<ZoneMemberScenario> members;
};

struct ZoneSetScenario
{
    std::string name;
    std::vector<std::string> zones;
};

// A copy that the fabric enforces, without aliases.
struct ActiveZoneSetScenario
{
    std::string name;
    std::vector<ZoneScenario> zones;
};

struct ZoningScenario
{
    bool defaultZone = false;
    ZoningLimits limits;
    std::vector<ZoneAliasScenario> aliases;
    std::vector<ZoneScenario> zones;
    std::vector<ZoneSetScenario> zoneSets;
    // At most one of the two: the configured zone set to start with, or a copy that differs from it.
    std::optional<std::string> active;
    std::optional<ActiveZoneSetScenario> activeSet;
};

} // namespace simulator

#endif
