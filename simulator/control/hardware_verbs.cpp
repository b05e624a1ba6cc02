// What can happen to the hardware of the local switch.
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"

#include <cmath>
#include <cstdlib>

namespace simulator
{
namespace
{

template <class Change> // void(FabricModel& model, uint64_t now)
std::string change(Change one)
{
    Engine::instance().write(one);
    return {};
}

template <SupplyState STATE>
std::string setSupply(const Words& values)
{
    const int number = numberOf(values[0], "supply");
    return change([number](FabricModel& model, std::uint64_t now) { model.setSupply(number, STATE, now); });
}

template <void (FabricModel::*CHANGE)(int, std::uint64_t)>
std::string changeBlade(const Words& values)
{
    const int number = numberOf(values[0], "blade");
    return change([number](FabricModel& model, std::uint64_t now) { (model.*CHANGE)(number, now); });
}

template <AdminState STATE>
std::string setBladeState(const Words& values)
{
    const int number = numberOf(values[0], "blade");
    return change([number](FabricModel& model, std::uint64_t now)
                  { model.setBladeAdminState(number, STATE, now); });
}

template <SensorKind KIND, void (FabricModel::*CHANGE)(SensorKind, int)>
std::string changeSensor(const Words& values)
{
    const int number = numberOf(values[0], "sensor");
    return change([number](FabricModel& model, std::uint64_t) { (model.*CHANGE)(KIND, number); });
}

template <SensorKind KIND>
std::string pin(const Words& values)
{
    const int number = numberOf(values[0], "sensor");
    char* end = nullptr;
    const double quantity = std::strtod(values[1].c_str(), &end);
    if (end == values[1].c_str() || *end != '\0' || !(std::abs(quantity) <= 1e6))
        throw UsageError("sensor: expected a reading such as 71.5, got \"" + values[1] + '"');
    const int reading = KIND == SensorKind::temperature ? hundredthsOf(quantity) : millivoltsOf(quantity);
    return change([=](FabricModel& model, std::uint64_t) { model.pinSensor(KIND, number, reading); });
}

constexpr SensorKind kTemperature = SensorKind::temperature;
constexpr SensorKind kVoltage = SensorKind::voltage;

} // namespace

std::vector<Verb> hardwareVerbs()
{
    return {
        {"supply NUMBER fail", "the power supply fails", setSupply<SupplyState::failed>},
        {"supply NUMBER warn", "it works, but something is wrong", setSupply<SupplyState::warning>},
        {"supply NUMBER repair", "it works", setSupply<SupplyState::normal>},
        {"supply NUMBER pull", "it is taken out", setSupply<SupplyState::notInstalled>},
        {"supply NUMBER insert", "one that works is put in", setSupply<SupplyState::normal>},
        {"sensor temperature NUMBER pin CELSIUS", "it reads this until it is released", pin<kTemperature>},
        {"sensor temperature NUMBER break",
         "it cannot be read",
         changeSensor<kTemperature, &FabricModel::breakSensor>},
        {"sensor temperature NUMBER release",
         "it reads what there is",
         changeSensor<kTemperature, &FabricModel::releaseSensor>},
        {"sensor voltage NUMBER pin VOLTS", "it reads this until it is released", pin<kVoltage>},
        {"sensor voltage NUMBER break",
         "it cannot be read",
         changeSensor<kVoltage, &FabricModel::breakSensor>},
        {"sensor voltage NUMBER release",
         "it reads what there is",
         changeSensor<kVoltage, &FabricModel::releaseSensor>},
        {"blade NUMBER fail", "the I/O blade and its diagnostics fail", changeBlade<&FabricModel::failBlade>},
        {"blade NUMBER repair", "one that works is in its slot", changeBlade<&FabricModel::insertBlade>},
        {"blade NUMBER pull", "it is taken out", changeBlade<&FabricModel::pullBlade>},
        {"blade NUMBER insert", "one that works is put in", changeBlade<&FabricModel::insertBlade>},
        {"blade NUMBER online", "an administrator switches it on", setBladeState<AdminState::online>},
        {"blade NUMBER offline", "an administrator switches it off", setBladeState<AdminState::offline>},
    };
}

} // namespace simulator
