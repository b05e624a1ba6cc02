// What the sensors, power supplies and I/O blades of a switch say of themselves.
#ifndef SIMULATOR_MODEL_HARDWARE_H
#define SIMULATOR_MODEL_HARDWARE_H

#include "simulator/model/FabricModel.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace simulator
{

// The element with this number, from 1; null when there is none.
template <class Elements>
auto* elementOf(Elements& elements, int number)
{
    const bool exists = number >= 1 && static_cast<std::size_t>(number) <= elements.size();
    return exists ? &elements[static_cast<std::size_t>(number) - 1] : nullptr;
}

// What a sensor of the local switch reads at `now`, in hundredths of a degree Celsius or in millivolts;
// nothing when it is broken.
std::optional<int> readingOf(const Switch& local, const TemperatureSensorScenario& sensor, std::uint64_t now);
std::optional<int> readingOf(const Switch& local, const VoltageSensorScenario& sensor, std::uint64_t now);

// The state of a sensor with this reading. A threshold belongs to what lies beyond it.
SensorState stateAt(const TemperatureSensorScenario& sensor, std::optional<int> reading);
SensorState stateAt(const VoltageSensorScenario& sensor, std::optional<int> reading);

// "Online", "Offline", "Diagnostics", "Downed"; empty for a blade that is not there.
std::string_view operState(const BladeScenario& blade);

} // namespace simulator

#endif
