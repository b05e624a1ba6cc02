// Describes zoning for a test in a line or two, and what a test sees of the switch's own.
#ifndef SIMULATOR_TESTING_ZONINGSETUP_H
#define SIMULATOR_TESTING_ZONINGSETUP_H

#include "simulator/scenario/ZoningScenario.h"

#include <string>
#include <utility>
#include <vector>

namespace simulator
{

// Members are texts as in platform/zoning_server.h: "2100026E1A40B7C1", "010300", "1:A", or an alias's name.
// ZoningSetup().alias("host", {"210002a5c0de0003"}).zone("z", {"host", "1:A"}).zoneSet("s",
// {"z"}).active("s")
class ZoningSetup
{
  public:
    ZoningSetup& alias(std::string name, const std::vector<std::string>& members);
    ZoningSetup&
    zone(std::string name, const std::vector<std::string>& members, ZoneType type = ZoneType::soft);
    ZoningSetup& zoneSet(std::string name, std::vector<std::string> zones)
    {
        _scenario.zoneSets.push_back({std::move(name), std::move(zones)});
        return *this;
    }
    ZoningSetup& active(std::string zoneSet) { return _scenario.active = std::move(zoneSet), *this; }
    // A copy that is active and whose zones need not be configured.
    ZoningSetup& activeCopy(std::string zoneSet) { return copy().name = std::move(zoneSet), *this; }
    ZoningSetup& activeZone(std::string name, const std::vector<std::string>& members);
    ZoningSetup& defaultZone(bool allowed) { return _scenario.defaultZone = allowed, *this; }
    ZoningSetup& limits(const ZoningLimits& limits) { return _scenario.limits = limits, *this; }

    const ZoningScenario& scenario() const { return _scenario; }

  private:
    ActiveZoneSetScenario& copy()
    {
        return _scenario.activeSet ? *_scenario.activeSet : _scenario.activeSet.emplace();
    }

    ZoningScenario _scenario;
};

// Names with what they hold, in order.
using NamedLists = std::vector<std::pair<std::string, std::vector<std::string>>>;

struct ActiveZoneSetView
{
    std::string name; // empty: none is active
    NamedLists zones; // with the texts of their members
};

// The switch's databases as texts.
struct ZoningView
{
    NamedLists aliases;
    NamedLists zones;
    NamedLists zoneSets;
    ActiveZoneSetView active; // of the local switch
    std::string lastChange;   // "database changed by cim agent", "activated by ...", "deactivated by ..."
};

} // namespace simulator

#endif
