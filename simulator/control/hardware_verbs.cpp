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

template <PartKind KIND, PartState STATE>
std::string setPart(const Words& values)
{
    const int number = numberOf(values[0], "number");
    return change([number](FabricModel& model, std::uint64_t now)
                  { model.setPart(KIND, number, STATE, now); });
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

template <SensorKind KIND, void (FabricModel::*CHANGE)(SensorKind, int, std::uint64_t)>
std::string changeSensor(const Words& values)
{
    const int number = numberOf(values[0], "sensor");
    return change([number](FabricModel& model, std::uint64_t now) { (model.*CHANGE)(KIND, number, now); });
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
    return change([=](FabricModel& model, std::uint64_t now)
                  { model.pinSensor(KIND, number, reading, now); });
}

constexpr SensorKind kTemperature = SensorKind::temperature;
constexpr SensorKind kVoltage = SensorKind::voltage;

} // namespace

std::vector<Verb> hardwareVerbs()
{
    return {
        {"supply NUMBER fail", "the power supply fails", setPart<PartKind::powerSupply, PartState::failed>},
        {"supply NUMBER warn",
         "it works, but something is wrong",
         setPart<PartKind::powerSupply, PartState::warning>},
        {"supply NUMBER repair", "it works", setPart<PartKind::powerSupply, PartState::normal>},
        {"supply NUMBER pull", "it is taken out", setPart<PartKind::powerSupply, PartState::notInstalled>},
        {"supply NUMBER insert",
         "one that works is put in",
         setPart<PartKind::powerSupply, PartState::normal>},
        {"fan NUMBER fail", "the fan fails", setPart<PartKind::fan, PartState::failed>},
        {"fan NUMBER warn", "it works, but something is wrong", setPart<PartKind::fan, PartState::warning>},
        {"fan NUMBER repair", "it works", setPart<PartKind::fan, PartState::normal>},
        {"fan NUMBER pull", "it is taken out", setPart<PartKind::fan, PartState::notInstalled>},
        {"fan NUMBER insert", "one that works is put in", setPart<PartKind::fan, PartState::normal>},
        {"cpu NUMBER fail", "the control processor fails", setPart<PartKind::cpu, PartState::failed>},
        {"cpu NUMBER warn", "it works, but something is wrong", setPart<PartKind::cpu, PartState::warning>},
        {"cpu NUMBER repair", "it works", setPart<PartKind::cpu, PartState::normal>},
        {"cpu NUMBER pull", "it is taken out", setPart<PartKind::cpu, PartState::notInstalled>},
        {"cpu NUMBER insert", "one that works is put in", setPart<PartKind::cpu, PartState::normal>},
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
