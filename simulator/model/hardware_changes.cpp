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
    const std::string event = "power supply " + std::to_string(number) + " " + std::string(toText(state));
    _logs.write(LogKind::user, "chassis", event, now);
    if (goesWrong)
        _logs.write(LogKind::alarm, "chassis", event, now);
    warmthChanged(now);
}

SensorScenario& FabricModel::sensor(SensorKind kind, int number)
{
    if (kind == SensorKind::temperature)
        return elementWith(_local->facts.temperatureSensors, "temperature sensor", number);
    return elementWith(_local->facts.voltageSensors, "voltage sensor", number);
}

void FabricModel::pinSensor(SensorKind kind, int number, int reading)
{
    SensorScenario& found = sensor(kind, number);
    found.pinned = reading;
    found.broken = false;
}

void FabricModel::breakSensor(SensorKind kind, int number)
{
    sensor(kind, number).broken = true;
}

void FabricModel::releaseSensor(SensorKind kind, int number)
{
    SensorScenario& found = sensor(kind, number);
    found.pinned.reset();
    found.broken = false;
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
    _logs.write(LogKind::user, "chassis", event, now);
    if (changed.present && changed.failed)
        _logs.write(LogKind::alarm, "chassis", event, now);
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
