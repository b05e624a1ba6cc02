// Tests of the chassis: texts, services, sensors, power supplies, blades and what their ports make of it.
#include "platform/xpl_lib.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <sstream>

using namespace simulator;
using namespace std::chrono_literals;

namespace
{

// Compares keys below `prefix` with "name value name value ..."; "!16" stands for status 16.
void expectKeys(const std::string& prefix, const std::string& attributes, const std::string& when = {})
{
    std::istringstream words(attributes);
    for (std::string name, value; words >> name >> value;)
    {
        const std::string key = prefix + "." + name;
        EXPECT_EQ(value[0] == '!' ? "status " + value.substr(1) : value, valueOf(key)) << key << " " << when;
    }
}

double numberOf(const std::string& key)
{
    return std::strtod(valueOf(key).c_str(), nullptr);
}

TEST(Sensors, StatesFollowTheirThresholds)
{
    SimSwitch sim = SimSwitch::make()
                        .temperature("Intake", 25, 40, 50)
                        .temperature("Exhaust", 35)
                        .voltage("12 V", 12)
                        .voltage("-5 V", -5)
                        .switchFacts(
                            [](SwitchScenario& one)
                            {
                                one.temperatureSensors[1].warnHigh.reset();
                                one.temperatureSensors[1].critHigh.reset();
                                one.voltageSensors[1] = VoltageSensorScenario();
                                one.voltageSensors[1].nominal = -5000;
                            });
    const auto celsius = [&sim](int sensor, double value) { sim.pinTemperature(sensor, value); };
    const auto volts = [&sim](int sensor, double value) { sim.pinVoltage(sensor, value); };
    const struct
    {
        std::function<void(int, double)> pin;
        const char* kind;
        int number;
        double value;
        const char* attributes;
    } rows[] = {
        {celsius, "TempSensor", 1, 39.99, "Reading 39.99 State Normal WarnHigh 40.00 CritHigh 50.00"},
        {celsius, "TempSensor", 1, 40, "Reading 40.00 State Warning"},
        {celsius, "TempSensor", 1, 49.99, "Reading 49.99 State Warning"},
        {celsius, "TempSensor", 1, 50, "Reading 50.00 State Critical"},
        {celsius, "TempSensor", 1, -0.05, "Reading -0.05 State Normal Description Intake"},
        {celsius, "TempSensor", 2, 120, "Reading 120.00 State Normal WarnHigh !16 CritHigh !16"},
        {volts, "VoltSensor", 1, 10.8, "Reading 10.800 State Critical CritLow 10.800 CritHigh 13.200"},
        {volts, "VoltSensor", 1, 10.801, "Reading 10.801 State Normal Nominal 12.000"},
        {volts, "VoltSensor", 1, 13.199, "Reading 13.199 State Normal"},
        {volts, "VoltSensor", 1, 13.2, "Reading 13.200 State Critical"},
        {volts, "VoltSensor", 2, -0.5, "Reading -0.500 State Normal Nominal -5.000 CritLow !16 CritHigh !16"},
    };
    for (const auto& row : rows)
    {
        row.pin(row.number, row.value);
        sim.advance(1h);
        const std::string prefix = std::string("Oper.Switch.") + row.kind + ".";
        expectKeys(prefix + std::to_string(row.number), row.attributes);
        expectKeys(prefix.substr(0, prefix.size() - 1),
                   "Count 2 0.State !2 3.State !2 01.State !2 x.State !2 1.Colour !2");
    }
    sim.breakSensor(SensorKind::temperature, 1);
    sim.breakSensor(SensorKind::voltage, 1);
    expectKeys("Oper.Switch.TempSensor.1", "Reading !16 State Unknown WarnHigh 40.00");
    expectKeys("Oper.Switch.VoltSensor.1", "Reading !16 State Unknown Nominal 12.000");
    sim.releaseSensor(SensorKind::temperature, 1);
    EXPECT_NEAR(27, numberOf("Oper.Switch.TempSensor.1.Reading"), 3);
    EXPECT_THROW(sim.pinTemperature(3, 1), ScenarioError);
    EXPECT_THROW(sim.breakSensor(SensorKind::voltage, 0), ScenarioError);
}

// The least and the greatest reading over an hour, which must not jump.
std::pair<double, double> rangeOf(SimSwitch& sim, const std::string& key, double step)
{
    double before = numberOf(key);
    std::pair<double, double> range(before, before);
    for (int i = 0; i < 360; ++i)
    {
        sim.advance(10s);
        const double reading = numberOf(key);
        EXPECT_LE(std::abs(reading - before), step) << key << " at " << sim.now();
        range = {std::min(range.first, reading), std::max(range.second, reading)};
        before = reading;
    }
    return range;
}

TEST(Sensors, ReadingsMoveWithLoadFailuresAndTheRoomAndNeverJump)
{
    const std::string temperature = "Oper.Switch.TempSensor.1.Reading";
    const std::string voltage = "Oper.Switch.VoltSensor.1.Reading";
    PortScenario loaded;
    loaded.link = LinkState::up;
    loaded.rxLoadPercent = loaded.txLoadPercent = 100;
    SimSwitch sim =
        SimSwitch::make().blades(1, 4).everyPort(loaded).temperature("t", 30).voltage("v", 12).supplies(2);
    constexpr double kStep = 1.5; // degrees in ten seconds
    rangeOf(sim, temperature, kStep);
    const auto busy = rangeOf(sim, temperature, kStep);
    EXPECT_GT(busy.second, busy.first) << "the room";
    EXPECT_LT(busy.second - busy.first, 1);
    for (int port = 0; port < 4; ++port)
        sim.portDown(port);
    EXPECT_GE(numberOf(temperature), busy.first) << "cools in its own time";
    rangeOf(sim, temperature, kStep);
    const auto idle = rangeOf(sim, temperature, kStep);
    EXPECT_NEAR(30, idle.first, 0.5);
    EXPECT_NEAR(30, idle.second, 0.5);
    EXPECT_GT(busy.first, idle.second + 5);
    sim.failSupply(2);
    EXPECT_LE(numberOf(temperature), idle.second) << "warms in its own time";
    rangeOf(sim, temperature, kStep);
    EXPECT_GT(numberOf(temperature), idle.second + 1);
    sim.insertSupply(2);
    sim.failBlade(1); // on which no port sits
    rangeOf(sim, temperature, kStep);
    EXPECT_GT(numberOf(temperature), idle.second + 0.2);
    sim.insertBlade(1);
    rangeOf(sim, temperature, kStep);
    EXPECT_LE(numberOf(temperature), idle.second);

    const auto volts = rangeOf(sim, voltage, 0.12);
    EXPECT_GT(volts.second, volts.first);
    EXPECT_NEAR(12, volts.first, 0.12);
    EXPECT_NEAR(12, volts.second, 0.12);
}

TEST(Sensors, ReadingsAreAFunctionOfSeedAndTime)
{
    const auto readings = [](int seed, std::chrono::milliseconds step)
    {
        Scenario scenario = SimSwitch::make()
                                .temperature("a", 30)
                                .temperature("b", 30)
                                .voltage("c", 12)
                                .voltage("d", 12)
                                .scenario();
        scenario.seed = seed;
        SimSwitch sim(scenario);
        for (std::chrono::milliseconds passed{}; passed < 1h; passed += step)
            sim.advance(step);
        return std::vector<std::string>{valueOf("Oper.Switch.TempSensor.1.Reading"),
                                        valueOf("Oper.Switch.TempSensor.2.Reading"),
                                        valueOf("Oper.Switch.VoltSensor.1.Reading"),
                                        valueOf("Oper.Switch.VoltSensor.2.Reading")};
    };
    const auto one = readings(7, 1h);
    EXPECT_EQ(one, readings(7, 60s));
    const auto other = readings(8, 1h);
    EXPECT_NE(one[0], other[0]);
    EXPECT_NE(one[2], other[2]);
    EXPECT_NE(one[0], one[1]) << "sensors differ though their facts do not";
    EXPECT_NE(one[2], one[3]);
}

TEST(Supplies, TellWhatHappensToThem)
{
    SimSwitch sim = SimSwitch::make().supplies(2);
    const std::pair<void (SimSwitch::*)(int), const char*> rows[] = {
        {&SimSwitch::warnSupply, "State Warning OutputPower 300000"},
        {&SimSwitch::failSupply, "State Failed OutputPower 300000"},
        {&SimSwitch::pullSupply, "State NotInstalled OutputPower !16"},
        {&SimSwitch::insertSupply, "State Normal OutputPower 300000"},
    };
    for (const auto& [happens, attributes] : rows)
    {
        (sim.*happens)(2);
        expectKeys("Oper.Switch.PowerSupply.2", attributes);
        expectKeys("Oper.Switch.PowerSupply", "Count 2 1.State Normal 3.State !2");
    }
    sim.pullSupply(1);
    EXPECT_EQ("power supply 1 is not there", errorFrom([&] { sim.failSupply(1); }));
    EXPECT_EQ("the local switch has no power supply 3", errorFrom([&] { sim.pullSupply(3); }));
}

TEST(Blades, TakeTheirPortsNodesAndLinksWithThem)
{
    SimSwitch sim = SimSwitch::make()
                        .blades(2, 3)
                        .remote(2, 1)
                        .isl({1, 4, 2, 0, false})
                        .node(1, 5, "210002a5c0de0005")
                        .node(1, 0, "210002a5c0de0000")
                        .port(3, [](PortScenario& port) { port.adminState = AdminState::diagnostics; });
    const std::string gone = "Present False OperState !16 AdminState !16 DiagStatus !16 PartNumber !16 "
                             "SerialNumber !16";
    const struct
    {
        std::function<void()> happens;
        std::string blade;
        const char* port3;
        const char* port5;
        bool online;
    } rows[] = {
        {[&] { sim.insertBlade(2); },
         "Present True OperState Online AdminState Online DiagStatus Passed SerialNumber TVB1002",
         "Diagnostics",
         "Online",
         true},
        {[&] { sim.failBlade(2); },
         "OperState Downed AdminState Online DiagStatus Failed",
         "Diagnostics",
         "Downed",
         false},
        {[&] { sim.pullBlade(2); }, gone, "Offline", "Offline", false},
        {[&] { sim.insertBlade(2); }, "OperState Online DiagStatus Passed", "Diagnostics", "Online", true},
        {[&] { sim.switchBlade(2, AdminState::offline); },
         "OperState Offline AdminState Offline DiagStatus Passed",
         "Offline",
         "Offline",
         false},
        {[&] { sim.switchBlade(2, AdminState::diagnostics); },
         "OperState Diagnostics AdminState Diagnostics",
         "Diagnostics",
         "Diagnostics",
         false},
        {[&] { sim.switchBlade(2, AdminState::online); }, "OperState Online", "Diagnostics", "Online", true},
    };
    for (const auto& row : rows)
    {
        row.happens();
        const std::string when = "in row " + std::to_string(&row - rows);
        expectKeys("Oper.Switch.IOBlade.2", row.blade, when);
        EXPECT_EQ(row.port3, valueOf("Oper.UserPort.0.3.OperState")) << when;
        EXPECT_EQ(row.port5, valueOf("Oper.UserPort.0.5.OperState")) << when;
        EXPECT_EQ(row.online ? 2u : 1u, attachedTo("1").size()) << when;
        EXPECT_EQ(row.online ? "Online" : "Offline", valueOf("Oper.TopologyAll.2.Entry.0.PortState")) << when;
        EXPECT_EQ(row.online ? "8Gb/s" : "Unknown", valueOf("Oper.UserPort.0.4.LinkSpeed")) << when;
        EXPECT_EQ("Online", valueOf("Oper.UserPort.0.0.OperState")) << "the other blade " << when;
        EXPECT_EQ("2", valueOf("Oper.UserPort.0.5.IOBlade")) << when;
    }
    expectKeys("Oper.Switch.IOBlade", "Count 2 1.OperState Online 3.Present !2");
    EXPECT_EQ("Rowan IO3", valueOf("Oper.Switch.IOBlade.1.Model"));
    sim.pullBlade(1);
    EXPECT_EQ("blade 1 is not there", errorFrom([&] { sim.failBlade(1); }));
    EXPECT_EQ("the local switch has no blade 3", errorFrom([&] { sim.pullBlade(3); }));
    sim.open(SimSwitch::make().scenario());
    EXPECT_EQ("status 16", valueOf("Oper.UserPort.0.0.IOBlade"));
    EXPECT_EQ("status 2", valueOf("Oper.UserPort.0.4.IOBlade"));
    expectKeys("Oper.Switch", "IOBlade.Count 0 TempSensor.Count 0 VoltSensor.Count 0 PowerSupply.Count 0");
}

TEST(PortTypes, ThatDoNotFitTakeTheLinkDown)
{
    const SimSwitch sim =
        SimSwitch::make().ports(2).remote(2, 1).isl({1, 0, 2, 0, false}).node(1, 1, "210002a5c0de0001");
    const struct
    {
        const char* type;
        const char* toSwitch;
        const char* toNode;
    } rows[] = {
        {"E", "Online", "Offline"},
        {"F", "Isolated", "Online"},
        {"FL", "Isolated", "Online"},
        {"G", "Online", "Online"},
        {"GL", "Online", "Online"},
    };
    for (const auto& row : rows)
    {
        for (const char* port : {"0", "1"})
            EXPECT_EQ(0, setKey(std::string("Config.UserPort.0.") + port + ".Type." + row.type));
        EXPECT_EQ(row.toSwitch, valueOf("Oper.UserPort.0.0.OperState")) << row.type;
        EXPECT_EQ(row.toSwitch, valueOf("Oper.TopologyAll.2.Entry.0.PortState"))
            << "the other end " << row.type;
        EXPECT_EQ(row.toNode, valueOf("Oper.UserPort.0.1.OperState")) << row.type;
        EXPECT_EQ(row.toNode == std::string("Online") ? 1u : 0u, attachedTo("1").size()) << row.type;
    }
}

TEST(SwitchConfig, IsToldAndTakesWhatItCanBe)
{
    SimSwitch sim = SimSwitch::make().switchFacts([](SwitchScenario& one) { one.services.telnet = false; });
    const std::string longest(128, 'x');
    const struct
    {
        std::string write; // after "Config.Switch."
        int status;
        const char* key;
        std::string value;
    } rows[] = {
        {"Location.Row 7, rack 3. Left.", 0, "Config.Switch.Location", "Row 7, rack 3. Left."},
        {"Location." + longest, 0, "Config.Switch.Location", longest},
        {"Location." + longest + "x", 9, "Config.Switch.Location", longest},
        {"Location.", 0, "Config.Switch.Location", ""},
        {"TelnetEnabled.True", 0, "Config.Switch.TelnetEnabled", "True"},
        {"SNMPEnabled.False", 0, "Config.Switch.SNMPEnabled", "False"},
        {"WebEnabled.False", 0, "Config.Switch.WebEnabled", "False"},
        {"SSHEnabled.False", 0, "Config.Switch.SSHEnabled", "False"},
        {"SSHEnabled.true", 9, "Config.Switch.SSHEnabled", "False"},
        {"SSHEnabled", 2, "Config.Switch.TelnetEnabled", "True"},
        {"IPAddress.10.0.0.1", 2, "Oper.Switch.IPAddress", "192.0.2.24"},
    };
    EXPECT_EQ("False", valueOf("Config.Switch.TelnetEnabled"));
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.status, setKey("Config.Switch." + row.write)) << row.write;
        EXPECT_EQ(row.value, valueOf(row.key)) << "after " << row.write;
    }
    EXPECT_EQ("V8.0.1.3.0", valueOf("Oper.Switch.FirmwareVersion"));
    sim.changeSwitch([](SwitchScenario& one) { one.standbyFirmwareVersion.clear(); });
    EXPECT_EQ("status 16", valueOf("Oper.Switch.StandbyFirmwareVersion"));
}

TEST(SwitchConfig, APreferredDomainIsKeptAndTheRunningOneStays)
{
    const SimSwitch sim = SimSwitch::make();
    xpl_swSwitchConfig record = switchRecord();
    record.preferredDomainId = 77;
    EXPECT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    EXPECT_EQ(0, xpl_swSwitchForceReset(hSwitch));
    EXPECT_EQ(77, switchRecord().preferredDomainId);
    EXPECT_EQ("1", valueOf("Oper.Switch.DomainID"));
}

// What a call hands out; "none" for no value.
std::string taken(char** cell)
{
    std::string text = *cell != nullptr ? *cell : "none";
    std::free(*cell);
    xpl_libFreeMemory(cell);
    return text;
}

std::vector<std::string> productInfo()
{
    char** cells[4];
    get_Product_Info(&cells[0], &cells[1], &cells[2], &cells[3]);
    std::vector<std::string> texts;
    for (char** cell : cells)
        texts.push_back(taken(cell));
    return texts;
}

TEST(ProductTexts, AreHandedOutWhenThereAreAny)
{
    SimSwitch sim = SimSwitch::make();
    const std::string serial = taken(get_Switch_ChassisSerialNum());
    EXPECT_EQ(10u, serial.size()) << serial;
    EXPECT_EQ((std::vector<std::string>{"Rowan 5024", "Tarvel Rowan 5024", serial, "Tarvel"}), productInfo());
    Scenario other = SimSwitch::make().scenario();
    other.seed = 2;
    sim.open(other);
    EXPECT_NE(serial, taken(get_Switch_ChassisSerialNum())) << "made up by seed";
    sim.open(SimSwitch::make().scenario());
    sim.changeSwitch(
        [](SwitchScenario& one)
        {
            one.chassisPartNumber = "cp";
            one.planarPartNumber = "pp";
            one.brand = "b";
            one.chassisSerialNumber = "";
            one.product.elementName = "";
        });
    const struct
    {
        const char* call;
        char** (*make)();
        const char* text;
    } rows[] = {
        {"get_Switch_ChassisPartNum", get_Switch_ChassisPartNum, "cp"},
        {"get_Switch_ChassisSerialNum", get_Switch_ChassisSerialNum, "none"},
        {"get_Switch_PlanarPartNum", get_Switch_PlanarPartNum, "pp"},
        {"get_Switch_Brand_Name", get_Switch_Brand_Name, "b"},
    };
    for (const auto& row : rows)
    {
        sim.mark();
        EXPECT_EQ(row.text, taken(row.make())) << row.call;
        sim.failNext(row.call);
        EXPECT_EQ("none", taken(row.make())) << row.call;
        EXPECT_EQ(2u, sim.calls(row.call));
    }
    EXPECT_EQ((std::vector<std::string>{"Rowan 5024", "none", serial, "Tarvel"}), productInfo());
    sim.failNext("get_Product_Info");
    EXPECT_EQ(std::vector<std::string>(4, "none"), productInfo());
    EXPECT_EQ(0u, sim.outstandingBlocks());
}

TEST(ChassisScenario, HasEightBladesAndSomethingWrong)
{
    SimSwitch sim(readScenario(SCENARIO_DIR "/chassis.json"));
    EXPECT_EQ(384u, portWalk().size());
    expectKeys("Oper.Switch",
               "IOBlade.Count 8 PowerSupply.Count 4 PowerSupply.3.State Failed TempSensor.6.State Warning "
               "TempSensor.1.State Normal IOBlade.6.Present False IPAddress 2001:db8:4:11::10");
    expectKeys(
        "Oper.UserPort.0",
        "0.IOBlade 1 47.IOBlade 1 48.IOBlade 2 383.IOBlade 8 0.OperState Online 240.OperState Offline");
    // What was saved starts the same chassis again.
    sim.pullSupply(1);
    sim.pinTemperature(1, 41.25);
    sim.failBlade(2);
    setKey("Config.Switch.Location.moved");
    const std::string saved = formatScenario(sim.scenario());
    sim.open(parseScenario(saved, "saved"));
    EXPECT_EQ(saved, formatScenario(sim.scenario()));
    expectKeys("Oper.Switch",
               "PowerSupply.1.State NotInstalled TempSensor.1.Reading 41.25 TempSensor.1.State Warning "
               "IOBlade.2.OperState Downed");
    EXPECT_EQ("moved", valueOf("Config.Switch.Location"));
    EXPECT_EQ("2", valueOf("Oper.UserPort.0.95.IOBlade"));
}

} // namespace
