// Describes a simulated switch for a test in a few lines; everything not said has a useful default.
#ifndef SIMULATOR_TESTING_SIMSWITCHSETUP_H
#define SIMULATOR_TESTING_SIMSWITCHSETUP_H

#include "simulator/scenario/Scenario.h"
#include "simulator/testing/ZoningSetup.h"

#include <string>
#include <utility>

namespace simulator
{

// Without further words: domain 1, WWN 100002a5c0de0001, "sim-switch", 4 ports whose links are up with
// nothing attached, at model time 0 with all counters at zero.
class SimSwitchSetup
{
  public:
    SimSwitchSetup()
    {
        SwitchScenario one;
        one.local = true;
        one.domain = 1;
        one.wwn = "100002a5c0de0001";
        one.name = "sim-switch";
        _scenario.switches.push_back(std::move(one));
        ports(4);
    }

    SimSwitchSetup& ports(int count)
    {
        local().ports = upPorts(count);
        return *this;
    }

    // Changes the facts of one port: .port(3, [](PortScenario& port) { port.hardware =
    // PortHardware::ethernet; }).
    template <class Change>
    SimSwitchSetup& port(int number, Change change)
    {
        change(local().ports.at(static_cast<std::size_t>(number)));
        return *this;
    }

    SimSwitchSetup& everyPort(const PortScenario& facts)
    {
        for (PortScenario& port : local().ports)
        {
            const int number = port.number;
            port = facts;
            port.number = number;
        }
        return *this;
    }

    // Without entries for what happens: for tests that compare whole scenarios.
    SimSwitchSetup& quiet() { return local().logEnabled = false, *this; }

    // Changes facts of the local switch: its type, faults, priority and so on.
    template <class Change>
    SimSwitchSetup& switchFacts(Change change)
    {
        change(local());
        return *this;
    }

    // Power supplies that work, each rated 300 W.
    SimSwitchSetup& supplies(int count)
    {
        PowerSupplyScenario supply;
        supply.outputPower = 300000;
        return local().powerSupplies.assign(static_cast<std::size_t>(count), supply), *this;
    }

    // Fans and control processors that work.
    SimSwitchSetup& fans(std::size_t count) { return local().fans.resize(count), *this; }
    SimSwitchSetup& cpus(std::size_t count) { return local().cpus.resize(count), *this; }

    // What the switch keeps for its CIM agent; a subscription that never ends.
    SimSwitchSetup& listener(std::string name, std::string destination, bool permanent = false)
    {
        local().listeners.push_back({std::move(name), permanent, std::move(destination)});
        return *this;
    }
    SimSwitchSetup& subscription(std::string name, std::string filter, std::vector<std::string> listeners)
    {
        SubscriptionScenario& one = local().subscriptions.emplace_back();
        one.name = std::move(name);
        one.filter = std::move(filter);
        one.enableState = "True";
        one.listeners = std::move(listeners);
        return *this;
    }

    // A sensor with the reading of the idle switch and its thresholds, in degrees Celsius.
    SimSwitchSetup&
    temperature(std::string description, double base, double warnHigh = 55, double critHigh = 70)
    {
        TemperatureSensorScenario& sensor = local().temperatureSensors.emplace_back();
        sensor.description = std::move(description);
        sensor.base = hundredthsOf(base);
        sensor.warnHigh = hundredthsOf(warnHigh);
        sensor.critHigh = hundredthsOf(critHigh);
        return *this;
    }

    // A sensor of a supply voltage, critical a tenth off its nominal value.
    SimSwitchSetup& voltage(std::string description, double nominal)
    {
        VoltageSensorScenario& sensor = local().voltageSensors.emplace_back();
        sensor.description = std::move(description);
        sensor.nominal = millivoltsOf(nominal);
        sensor.critLow = millivoltsOf(nominal * 0.9);
        sensor.critHigh = millivoltsOf(nominal * 1.1);
        return *this;
    }

    // Blades with so many ports each; they replace the ports there are.
    SimSwitchSetup& blades(int count, int portsEach)
    {
        ports(count * portsEach);
        local().blades.assign(static_cast<std::size_t>(count), BladeScenario());
        for (PortScenario& port : local().ports)
            port.blade = 1 + port.number / portsEach;
        for (int i = 1; i <= count; ++i)
        {
            BladeScenario& blade = local().blades[static_cast<std::size_t>(i) - 1];
            blade.model = "Rowan IO" + std::to_string(portsEach);
            blade.partNumber = "TV-IO-1";
            blade.serialNumber = "TVB" + std::to_string(1000 + i);
        }
        return *this;
    }

    SimSwitchSetup& wwn(std::string value) { return local().wwn = std::move(value), *this; }
    SimSwitchSetup& domain(int value) { return local().domain = value, *this; }
    SimSwitchSetup& uptimeSeconds(int value) { return _scenario.uptimeSeconds = value, *this; }
    SimSwitchSetup& noPrincipal() { return _scenario.noPrincipal = true, *this; }
    SimSwitchSetup& principal(int domainId) { return _scenario.principal = domainId, *this; }

    // A remote switch with ports that are up; its WWN ends in the domain.
    SimSwitchSetup& remote(int domainId, int portCount)
    {
        SwitchScenario one;
        one.domain = domainId;
        const std::string digits = std::to_string(1000 + domainId);
        one.wwn = "100002a5c0de" + digits;
        one.name = "remote-" + std::to_string(domainId);
        one.ports = upPorts(portCount);
        _scenario.switches.push_back(std::move(one));
        return *this;
    }

    SimSwitchSetup& node(int domainId, int portNumber, std::string portWwn)
    {
        NodeScenario one;
        one.domain = domainId;
        one.port = portNumber;
        one.portWwn = std::move(portWwn);
        _scenario.nodes.push_back(std::move(one));
        return *this;
    }

    SimSwitchSetup& node(const NodeScenario& facts) { return _scenario.nodes.push_back(facts), *this; }
    SimSwitchSetup& isl(const IslScenario& link) { return _scenario.isls.push_back(link), *this; }

    SimSwitchSetup& zoning(const ZoningSetup& setup) { return _scenario.zoning = setup.scenario(), *this; }

    const Scenario& scenario() const { return _scenario; }

  private:
    SwitchScenario& local() { return _scenario.switches.front(); }

    static std::vector<PortScenario> upPorts(int count)
    {
        std::vector<PortScenario> ports(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
        {
            ports[static_cast<std::size_t>(i)].number = i;
            ports[static_cast<std::size_t>(i)].link = LinkState::up;
        }
        return ports;
    }

    Scenario _scenario;
};

} // namespace simulator

#endif
