// What the sensors and I/O blades of the local switch say of themselves.
#include "simulator/model/hardware.h"

#include "simulator/model/made_up.h"

#include <cstdlib>

namespace simulator
{
namespace
{

// Heat in hundredths of a degree.
constexpr std::int64_t kHeatOfFullLoad = 1000;
constexpr int kHeatOfFailedSupply = 300; // its fans stand still
constexpr int kHeatOfFailedFan = 200;
constexpr int kHeatOfFailedBlade = 150;

constexpr int kRoomSwing = 40; // the room warms and cools by 0.4 degrees
constexpr std::uint64_t kRoomPeriod = 420000;
constexpr int kVoltageSwing = 6; // thousandths of the nominal voltage
constexpr std::uint64_t kVoltagePeriod = 61000;

// Sensors of the two kinds have their own luck.
constexpr std::uint64_t kTemperaturePlace = 1 << 20;
constexpr std::uint64_t kVoltagePlace = 2 << 20;

// A wave from -amplitude to amplitude and back in about `period` milliseconds, in a phase of its own.
int wave(std::uint64_t now, std::uint64_t period, std::uint64_t luck, int amplitude)
{
    const std::uint64_t half = period / 2 + luck % (period / 4);
    const std::uint64_t place = (now + (luck >> 32) % (2 * half)) % (2 * half);
    const std::uint64_t climbed = place < half ? place : 2 * half - place;
    return static_cast<int>(2 * static_cast<std::uint64_t>(amplitude) * climbed / half) - amplitude;
}

bool reaches(int reading, std::optional<int> high)
{
    return high && reading >= *high;
}

} // namespace

const BladeScenario* bladeOf(const Switch& owner, const Port& port)
{
    return elementOf(owner.facts.blades, port.facts.blade);
}

std::string_view operState(const BladeScenario& blade)
{
    if (!blade.present)
        return {};
    if (blade.adminState != AdminState::online)
        return toText(blade.adminState);
    return blade.failed ? "Downed" : toText(AdminState::online);
}

int heatOf(const Switch& local)
{
    const auto directions = static_cast<std::int64_t>(2 * local.ports.size());
    int heat =
        directions == 0 ? 0 : static_cast<int>(kHeatOfFullLoad * local.carriedPercent / (100 * directions));
    for (const PowerSupplyScenario& supply : local.facts.powerSupplies)
        heat += supply.state == PartState::failed ? kHeatOfFailedSupply : 0;
    for (const PartScenario& fan : local.facts.fans)
        heat += fan.state == PartState::failed ? kHeatOfFailedFan : 0;
    for (const BladeScenario& blade : local.facts.blades)
        heat += blade.present && blade.failed ? kHeatOfFailedBlade : 0;
    return heat;
}

std::optional<int> temperatureOf(const Switch& local, std::size_t index, std::uint64_t now)
{
    const TemperatureSensorScenario& sensor = local.facts.temperatureSensors[index];
    if (sensor.broken || sensor.pinned)
        return sensor.broken ? std::nullopt : sensor.pinned;
    const std::uint64_t luck = mix(local.seed, kTemperaturePlace + index);
    const int share = 70 + static_cast<int>(luck % 61); // per cent of the warmth that reaches the sensor
    return sensor.base + local.warmth.at(now) * share / 100 + wave(now, kRoomPeriod, luck, kRoomSwing);
}

std::optional<int> voltageOf(const Switch& local, std::size_t index, std::uint64_t now)
{
    const VoltageSensorScenario& sensor = local.facts.voltageSensors[index];
    if (sensor.broken || sensor.pinned)
        return sensor.broken ? std::nullopt : sensor.pinned;
    const int swing = std::abs(sensor.nominal) * kVoltageSwing / 1000;
    return sensor.nominal + wave(now, kVoltagePeriod, mix(local.seed, kVoltagePlace + index), swing);
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

} // namespace simulator
