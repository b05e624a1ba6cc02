// Keys of the local switch's sensors, power supplies and I/O blades, each numbered from 1.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hardware.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

// Adds the keys of one kind of element: "Oper.Switch.TempSensor.Count" and "Oper.Switch.TempSensor.%d...".
template <class Element>
class ElementKeys
{
  public:
    using Elements = std::vector<Element> SwitchScenario::*;

    ElementKeys(ReadKeys& keys, const std::string& kind, Elements elements)
        : _keys(keys), _prefix("Oper.Switch." + kind + "."), _elements(elements)
    {
        keys.add(_prefix + "Count",
                 ofLocalSwitch([elements](const SwitchScenario& one, Answer& answer)
                               { return answer.decimal((one.*elements).size()); }));
    }

    // int32_t(const Switch& local, size_t index, uint64_t now, Answer& answer)
    template <class Read>
    void add(const char* name, Read read)
    {
        const Elements elements = _elements;
        _keys.add(
            _prefix + "%d." + name,
            [elements,
             read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t now, Answer& answer)
            {
                int number = 0;
                const Switch& local = model.local();
                const bool exists =
                    parseIndex(arguments[0], number) && elementOf(local.facts.*elements, number) != nullptr;
                return exists ? read(local, static_cast<std::size_t>(number) - 1, now, answer)
                              : std::int32_t{XPL_UNKNOWN_KEY};
            });
    }

    // A text, empty when it has no value: string(const Element& element)
    template <class Tell>
    void addText(const char* name, Tell tell)
    {
        const Elements elements = _elements;
        add(name,
            [elements, tell](const Switch& local, std::size_t index, std::uint64_t, Answer& answer)
            { return answer.present(tell((local.facts.*elements)[index])); });
    }

    // A quantity that may be missing: optional<int>(const Element& element)
    template <class Tell>
    void addQuantity(const char* name, int decimals, Tell tell)
    {
        addText(name,
                [tell, decimals](const Element& element)
                {
                    const std::optional<int> value = tell(element);
                    return value ? decimalText(*value, decimals) : std::string();
                });
    }

    // What sensors of all kinds tell: optional<int>(const Switch& local, size_t index, uint64_t now)
    template <class ReadingOf>
    void addSensor(int decimals, ReadingOf readingOf)
    {
        const Elements elements = _elements;
        addText("Description", [](const Element& sensor) { return sensor.description; });
        add("Reading",
            [decimals, readingOf](const Switch& local, std::size_t index, std::uint64_t now, Answer& answer)
            {
                const std::optional<int> reading = readingOf(local, index, now);
                return answer.present(reading ? decimalText(*reading, decimals) : std::string());
            });
        add("State",
            [elements, readingOf](const Switch& local, std::size_t index, std::uint64_t now, Answer& answer)
            {
                const Element& sensor = (local.facts.*elements)[index];
                return answer.text(toText(stateAt(sensor, readingOf(local, index, now))));
            });
    }

  private:
    ReadKeys& _keys;
    std::string _prefix;
    Elements _elements;
};

void addSensorKeys(ReadKeys& keys)
{
    using Temperature = TemperatureSensorScenario;
    ElementKeys temperatures(keys, "TempSensor", &SwitchScenario::temperatureSensors);
    temperatures.addSensor(kTemperatureDecimals, temperatureOf);
    temperatures.addQuantity(
        "WarnHigh", kTemperatureDecimals, [](const Temperature& sensor) { return sensor.warnHigh; });
    temperatures.addQuantity(
        "CritHigh", kTemperatureDecimals, [](const Temperature& sensor) { return sensor.critHigh; });

    using Voltage = VoltageSensorScenario;
    ElementKeys voltages(keys, "VoltSensor", &SwitchScenario::voltageSensors);
    voltages.addSensor(kVoltageDecimals, voltageOf);
    voltages.addQuantity("Nominal",
                         kVoltageDecimals,
                         [](const Voltage& sensor) { return std::optional<int>(sensor.nominal); });
    voltages.addQuantity("CritLow", kVoltageDecimals, [](const Voltage& sensor) { return sensor.critLow; });
    voltages.addQuantity("CritHigh", kVoltageDecimals, [](const Voltage& sensor) { return sensor.critHigh; });
}

void addSupplyKeys(ReadKeys& keys)
{
    using Supply = PowerSupplyScenario;
    ElementKeys supplies(keys, "PowerSupply", &SwitchScenario::powerSupplies);
    supplies.addText("State", [](const Supply& supply) { return toText(supply.state); });
    supplies.addQuantity("OutputPower",
                         0,
                         [](const Supply& supply)
                         {
                             const bool tells =
                                 supply.state != PartState::notInstalled && supply.outputPower != 0;
                             return tells ? std::optional<int>(supply.outputPower) : std::nullopt;
                         });
}

// A blade that is not there tells that much and no more.
void addBladeKeys(ReadKeys& keys)
{
    using Blade = BladeScenario;
    ElementKeys blades(keys, "IOBlade", &SwitchScenario::blades);
    blades.addText("Present", [](const Blade& blade) { return blade.present ? "True" : "False"; });
    const auto addPresent = [&blades](const char* name, auto tell)
    {
        blades.addText(name,
                       [tell](const Blade& blade)
                       { return blade.present ? std::string(tell(blade)) : std::string(); });
    };
    addPresent("OperState", [](const Blade& blade) { return operState(blade); });
    addPresent("AdminState", [](const Blade& blade) { return toText(blade.adminState); });
    addPresent("DiagStatus",
               [](const Blade& blade) {
                   return blade.diagnostics == DiagStatus::unavailable ? std::string_view()
                                                                       : toText(blade.diagnostics);
               });
    addPresent("Model", [](const Blade& blade) { return blade.model; });
    addPresent("PartNumber", [](const Blade& blade) { return blade.partNumber; });
    addPresent("SerialNumber", [](const Blade& blade) { return blade.serialNumber; });
}

} // namespace

void addHardwareKeys(ReadKeys& keys)
{
    addSensorKeys(keys);
    addSupplyKeys(keys);
    addBladeKeys(keys);
}

} // namespace simulator
