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

void setSupply(int number, SupplyState state)
{
    change([=](FabricModel& model, std::uint64_t now) { model.setSupply(number, state, now); });
}

} // namespace

void SimSwitch::failSupply(int supply)
{
    setSupply(supply, SupplyState::failed);
}

void SimSwitch::warnSupply(int supply)
{
    setSupply(supply, SupplyState::warning);
}

void SimSwitch::pullSupply(int supply)
{
    setSupply(supply, SupplyState::notInstalled);
}

void SimSwitch::insertSupply(int supply)
{
    setSupply(supply, SupplyState::normal);
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
