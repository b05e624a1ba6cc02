// Which properties of which classes a scrape tells, and under which names.
#ifndef AGENT_METRICS_SWITCH_TABLES_H
#define AGENT_METRICS_SWITCH_TABLES_H

#include "agent/metrics/open_metrics.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace cimd
{

// The exponent is the instance's UnitModifier (CIM_NumericSensor).
inline constexpr std::int32_t kUnitModifier = std::numeric_limits<std::int32_t>::max();

// A property, or the first element of one that is an array.
struct SwitchFamily
{
    const char* property;
    MetricFamily metric;
    std::int32_t exponent = 0; ///< of ten, from the property's unit to the metric's
};

// What an instance is, and so what its labels tell.
enum class SwitchPart
{
    Switch,      ///< switch, wwn
    Port,        ///< switch, port, port_name, wwn; all but counters also type
    OfPort,      ///< the same, found by the InstanceID
    NumberedPart ///< switch, the part's number and its name
};

struct SwitchClass
{
    const char* className;
    SwitchPart part;
    const char* label; ///< of the number of a NumberedPart; "_name" behind it is the name's
    std::vector<SwitchFamily> families;
};

// In the order in which they are read; switches and ports come first, for the others refer to them.
const std::vector<SwitchClass>& switchClasses();

} // namespace cimd

#endif
