// What the sensors and I/O blades of the local switch say of themselves.
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

// The blade that the port sits on; null when it sits on none.
const BladeScenario* bladeOf(const Switch& owner, const Port& port);

// "Online", "Offline", "Diagnostics", "Downed"; empty for a blade that is not there.
std::string_view operState(const BladeScenario& blade);

// The heat towards which the switch warms: its ports carry traffic, and what failed no longer cools.
// Hundredths of a degree Celsius.
int heatOf(const Switch& local);

// What a sensor reads at `now`; nothing when it is broken. `index` is its place in the list, from 0.
// Temperatures follow the switch's warmth and the room, voltages waver around their nominal value; both are
// functions of time, seed and warmth alone and never jump while the sensor is not pinned.
std::optional<int> temperatureOf(const Switch& local, std::size_t index, std::uint64_t now);
std::optional<int> voltageOf(const Switch& local, std::size_t index, std::uint64_t now);

// The state of a sensor with this reading. A threshold belongs to what lies beyond it.
SensorState stateAt(const TemperatureSensorScenario& sensor, std::optional<int> reading);
SensorState stateAt(const VoltageSensorScenario& sensor, std::optional<int> reading);

} // namespace simulator

#endif
