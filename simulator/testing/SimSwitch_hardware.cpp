// The test handle's verbs for sensors, power supplies and blades.
#include "simulator/engine/Engine.h"
#include "simulator/testing/SimSwitch.h"

namespace simulator
{
namespace
{

template <class Change> // void(FabricModel& model, uint64_t now)
void change(Change one)
{
    Engine::instance().write(one);
}

void setPart(PartKind kind, int number, PartState state)
{
    change([=](FabricModel& model, std::uint64_t now) { model.setPart(kind, number, state, now); });
}

} // namespace

void SimSwitch::failSupply(int supply)
{
    setPart(PartKind::powerSupply, supply, PartState::failed);
}

void SimSwitch::warnSupply(int supply)
{
    setPart(PartKind::powerSupply, supply, PartState::warning);
}

void SimSwitch::pullSupply(int supply)
{
    setPart(PartKind::powerSupply, supply, PartState::notInstalled);
}

void SimSwitch::insertSupply(int supply)
{
    setPart(PartKind::powerSupply, supply, PartState::normal);
}

void SimSwitch::setFan(int fan, PartState state)
{
    setPart(PartKind::fan, fan, state);
}

void SimSwitch::setCpu(int cpu, PartState state)
{
    setPart(PartKind::cpu, cpu, state);
}

void SimSwitch::pinTemperature(int sensor, double celsius)
{
    change([=](FabricModel& model, std::uint64_t now)
           { model.pinSensor(SensorKind::temperature, sensor, hundredthsOf(celsius), now); });
}

void SimSwitch::pinVoltage(int sensor, double volts)
{
    change([=](FabricModel& model, std::uint64_t now)
           { model.pinSensor(SensorKind::voltage, sensor, millivoltsOf(volts), now); });
}

void SimSwitch::breakSensor(SensorKind kind, int sensor)
{
    change([=](FabricModel& model, std::uint64_t now) { model.breakSensor(kind, sensor, now); });
}

void SimSwitch::releaseSensor(SensorKind kind, int sensor)
{
    change([=](FabricModel& model, std::uint64_t now) { model.releaseSensor(kind, sensor, now); });
}

void SimSwitch::failBlade(int blade)
{
    change([=](FabricModel& model, std::uint64_t now) { model.failBlade(blade, now); });
}

void SimSwitch::pullBlade(int blade)
{
    change([=](FabricModel& model, std::uint64_t now) { model.pullBlade(blade, now); });
}

void SimSwitch::insertBlade(int blade)
{
    change([=](FabricModel& model, std::uint64_t now) { model.insertBlade(blade, now); });
}

void SimSwitch::switchBlade(int blade, AdminState state)
{
    change([=](FabricModel& model, std::uint64_t now) { model.setBladeAdminState(blade, state, now); });
}

} // namespace simulator
