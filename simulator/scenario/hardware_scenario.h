// What the chassis of the local switch holds: sensors, parts that are replaced, and I/O blades.
#ifndef SIMULATOR_SCENARIO_HARDWARE_SCENARIO_H
#define SIMULATOR_SCENARIO_HARDWARE_SCENARIO_H

#include "simulator/model/names.h"

#include <cmath>
#include <optional>
#include <string>

namespace simulator
{

// Quantities are whole numbers of their last decimal: hundredths of a degree Celsius, and millivolts.
constexpr int kTemperatureDecimals = 2;
constexpr int kVoltageDecimals = 3;

inline int hundredthsOf(double celsius)
{
    return static_cast<int>(std::lround(celsius * 100));
}
inline int millivoltsOf(double volts)
{
    return static_cast<int>(std::lround(volts * 1000));
}

enum class SensorKind
{
    temperature,
    voltage
};

// What sensors of all kinds have.
struct SensorScenario
{
    std::string description;
    std::optional<int> pinned; // the reading stands still at this value
    bool broken = false;       // cannot be read
};

struct TemperatureSensorScenario : SensorScenario
{
    int base = 3000; // the reading of an idle, healthy switch, in the mean
    std::optional<int> warnHigh;
    std::optional<int> critHigh;
};

struct VoltageSensorScenario : SensorScenario
{
    int nominal = 0;
    std::optional<int> critLow;
    std::optional<int> critHigh;
};

// Parts that fail and are replaced.
enum class PartKind
{
    powerSupply,
    fan,
    cpu
};

struct PartScenario
{
    PartState state = PartState::normal;
};

struct PowerSupplyScenario : PartScenario
{
    int outputPower = 0; // rated, in milliwatts; 0: the supply does not tell
};

// The numbers of the ports between two, both included.
struct PortRange
{
    int first = 0;
    int last = 0;
};

struct BladeScenario
{
    bool present = true;
    bool failed = false;
    AdminState adminState = AdminState::online;
    DiagStatus diagnostics = DiagStatus::passed;
    std::string model;
    std::string partNumber;
    std::string serialNumber;
    // How a file names the blade's ports in short. The reader tells each port its blade and leaves this
    // empty.
    std::optional<PortRange> ports;
};

// The management services that a switch can be reached by.
struct ServiceFlags
{
    bool snmp = true;
    bool web = true;
    bool telnet = true;
    bool ssh = true;
};

// The product that the switch is. Texts that are not given follow from other facts.
struct ProductTexts
{
    std::optional<std::string> name;              // the switch's type
    std::optional<std::string> elementName;       // the brand and the type
    std::optional<std::string> identifyingNumber; // the chassis' serial number
    std::optional<std::string> vendor;            // the brand
};

} // namespace simulator

#endif
