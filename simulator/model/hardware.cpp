// What the sensors, power supplies and I/O blades of a switch say of themselves.
#include "simulator/model/hardware.h"

namespace simulator
{
namespace
{

bool reaches(int reading, std::optional<int> high)
{
    return high && reading >= *high;
}

} // namespace

std::optional<int> readingOf(const Switch&, const TemperatureSensorScenario& sensor, std::uint64_t)
{
    if (sensor.broken)
        return std::nullopt;
    return sensor.pinned.value_or(sensor.base);
}

std::optional<int> readingOf(const Switch&, const VoltageSensorScenario& sensor, std::uint64_t)
{
    if (sensor.broken)
        return std::nullopt;
    return sensor.pinned.value_or(sensor.nominal);
}

SensorState stateAt(const TemperatureSensorScenario& sensor, std::optional<int> reading)
{
    if (!reading)
        return SensorState::unknown;
    if (reaches(*reading, sensor.critHigh))
        return SensorState::critical;
    return reaches(*reading, sensor.warnHigh) ? SensorState::warning : SensorState::normal;
}

SensorState stateAt(const VoltageSensorScenario& sensor, std::optional<int> reading)
{
    if (!reading)
        return SensorState::unknown;
    const bool tooLow = sensor.critLow && *reading <= *sensor.critLow;
    return tooLow || reaches(*reading, sensor.critHigh) ? SensorState::critical : SensorState::normal;
}

std::string_view operState(const BladeScenario& blade)
{
    if (!blade.present)
        return {};
    if (blade.adminState != AdminState::online)
        return toText(blade.adminState);
    return blade.failed ? "Downed" : toText(AdminState::online);
}

} // namespace simulator
