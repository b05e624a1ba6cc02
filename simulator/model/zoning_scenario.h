// The zoning databases from the facts of a scenario and back.
#ifndef SIMULATOR_MODEL_ZONING_SCENARIO_H
#define SIMULATOR_MODEL_ZONING_SCENARIO_H

#include "simulator/model/ActiveZoneSet.h"

#include <optional>

namespace simulator
{

// Each throws ScenarioError for what the switch would refuse, with its place in the scenario.
ZoningDatabase databaseOf(const ZoningScenario& facts);
// Nothing when none is active.
std::optional<ActiveZoneSet> activeSetOf(const ZoningScenario& facts, const ZoningDatabase& database);

// `active` may be null.
ZoningScenario
zoningScenarioOf(const ZoningDatabase& database, const ActiveZoneSet* active, bool defaultZone);

} // namespace simulator

#endif
