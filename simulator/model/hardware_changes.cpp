// What happens to the hardware of the local switch.
#include "simulator/model/hardware.h"

namespace simulator
{
namespace
{

template <class Elements>
auto& elementWith(Elements& elements, const char* what, int number)
{
    auto* found = elementOf(elements, number);
    if (found == nullptr)
        throw ScenarioError("",
                            "the local switch has no " + std::string(what) + " " + std::to_string(number));
    return *found;
}

[[noreturn]] void refuseEmpty(const char* what, int number)
{
    throw ScenarioError("", std::string(what) + " " + std::to_string(number) + " is not there");
}

} // namespace

void FabricModel::warmthChanged(std::uint64_t now)
{
    _local->warmth.setTarget(heatOf(*_local), now);
}

void FabricModel::setSupply(int number, SupplyState state, std::uint64_t now)
{
    PowerSupplyScenario& supply = elementWith(_local->facts.powerSupplies, "power supply", number);
    const bool goesWrong = state == SupplyState::warning || state == SupplyState::failed;
    if (goesWrong && supply.state == SupplyState::notInstalled)
        refuseEmpty("power supply", number);
    supply.state = state;
    chassisEvent("power supply " + std::to_string(number) + " " + std::string(toText(state)), goesWrong, now);
    warmthChanged(now);
}

void FabricModel::chassisEvent(const std::string& event, bool failure, std::uint64_t now)
{
    _logs.write(LogKind::user, "chassis", event, now);
    if (failure)
        _logs.write(LogKind::alarm, "chassis", event, now);
}

void FabricModel::changeSensor(SensorKind kind,
                               int number,
                               std::uint64_t now,
                               const std::function<void(SensorScenario& sensor)>& change)
{
    const auto changeOne = [&](auto& sensors, const char* what, auto readingOf)
    {
        auto& sensor = elementWith(sensors, what, number);
        const auto state = [&]
        { return stateAt(sensor, readingOf(*_local, static_cast<std::size_t>(number) - 1, now)); };
        const SensorState before = state();
        change(sensor);
        const SensorState after = state();
        if (after != before)
            chassisEvent(std::string(what) + " " + std::to_string(number) + " " + std::string(toText(after)),
                         after != SensorState::normal,
                         now);
    };
    if (kind == SensorKind::temperature)
        changeOne(_local->facts.temperatureSensors, "temperature sensor", temperatureOf);
    else
        changeOne(_local->facts.voltageSensors, "voltage sensor", voltageOf);
}

void FabricModel::pinSensor(SensorKind kind, int number, int reading, std::uint64_t now)
{
    changeSensor(kind,
                 number,
                 now,
                 [reading](SensorScenario& sensor)
                 {
                     sensor.pinned = reading;
                     sensor.broken = false;
                 });
}

void FabricModel::breakSensor(SensorKind kind, int number, std::uint64_t now)
{
    changeSensor(kind, number, now, [](SensorScenario& sensor) { sensor.broken = true; });
}

void FabricModel::releaseSensor(SensorKind kind, int number, std::uint64_t now)
{
    changeSensor(kind,
                 number,
                 now,
                 [](SensorScenario& sensor)
                 {
                     sensor.pinned.reset();
                     sensor.broken = false;
                 });
}

BladeScenario& FabricModel::blade(int number)
{
    return elementWith(_local->facts.blades, "blade", number);
}

void FabricModel::bladeChanged(int number, std::uint64_t now)
{
    const BladeScenario& changed = blade(number);
    const std::string_view state = operState(changed);
    const std::string event =
        "blade " + std::to_string(number) + " " + (state.empty() ? "removed" : std::string(state));
    chassisEvent(event, changed.present && changed.failed, now);
    for (Port& port : _local->ports)
        if (port.facts.blade == number)
            linkChanged(*_local, port, now);
    warmthChanged(now);
}

void FabricModel::failBlade(int number, std::uint64_t now)
{
    BladeScenario& found = blade(number);
    if (!found.present)
        refuseEmpty("blade", number);
    found.failed = true;
    found.diagnostics = DiagStatus::failed;
    bladeChanged(number, now);
}

void FabricModel::pullBlade(int number, std::uint64_t now)
{
    blade(number).present = false;
    bladeChanged(number, now);
}

void FabricModel::insertBlade(int number, std::uint64_t now)
{
    BladeScenario& found = blade(number);
    found.present = true;
    found.failed = false;
    found.diagnostics = DiagStatus::passed;
    bladeChanged(number, now);
}

void FabricModel::setBladeAdminState(int number, AdminState state, std::uint64_t now)
{
    blade(number).adminState = state;
    bladeChanged(number, now);
}

} // namespace simulator
