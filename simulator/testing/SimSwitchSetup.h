// Describes a simulated switch for a test in a few lines; everything not said has a useful default.
#ifndef SIMULATOR_TESTING_SIMSWITCHSETUP_H
#define SIMULATOR_TESTING_SIMSWITCHSETUP_H

#include "simulator/scenario/Scenario.h"

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

    // Changes facts of the local switch: its type, faults, priority and so on.
    template <class Change>
    SimSwitchSetup& switchFacts(Change change)
    {
        change(local());
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
