// Checks that the parts of a scenario fit one another.
#include "simulator/model/CimSubscriptions.h"
#include "simulator/model/EventLog.h"
#include "simulator/model/hex.h"
#include "simulator/model/zoning_scenario.h"
#include "simulator/scenario/Scenario.h"

#include <algorithm>
#include <arpa/inet.h>
#include <map>
#include <netinet/in.h>
#include <set>

namespace simulator
{
namespace
{

std::string at(const char* list, std::size_t index, const char* field)
{
    return "/" + std::string(list) + "/" + std::to_string(index) + "/" + field;
}

bool inOrder(std::optional<int> low, std::optional<int> high)
{
    return !low || !high || *low <= *high;
}

class Validator
{
  public:
    explicit Validator(const Scenario& scenario) : _scenario(scenario) {}

    void run()
    {
        checkSwitches();
        checkIsls();
        checkNodes();
        const bool known = _scenario.principal == 0 || _ports.count(_scenario.principal) != 0;
        if (!known)
            throw ScenarioError("/principal", "no switch has domain " + std::to_string(_scenario.principal));
        activeSetOf(_scenario.zoning, databaseOf(_scenario.zoning)); // they refuse what does not fit
    }

  private:
    void checkSwitches()
    {
        int locals = 0;
        std::set<std::string> wwns;
        for (std::size_t i = 0; i < _scenario.switches.size(); ++i)
        {
            const SwitchScenario& one = _scenario.switches[i];
            if (!_ports.emplace(one.domain, std::set<int>()).second)
            {
                throw ScenarioError(at("switches", i, "domain"),
                                    "domain " + std::to_string(one.domain) + " is used twice");
            }
            if (!wwns.insert(lowerCase(one.wwn)).second)
                throw ScenarioError(at("switches", i, "wwn"), one.wwn + " is used twice");
            locals += one.local ? 1 : 0;
            checkPorts(one, at("switches", i, "ports"));
            if (one.local)
                checkChassis(one, "/switches/" + std::to_string(i));
        }
        if (locals != 1)
        {
            throw ScenarioError("/switches",
                                "expected exactly one switch with \"local\": true, got " +
                                    std::to_string(locals));
        }
    }

    void checkPorts(const SwitchScenario& owner, const std::string& place)
    {
        const int limit = owner.local ? kMaxLocalPorts : kMaxRemotePorts;
        std::set<int>& numbers = _ports[owner.domain];
        for (const PortScenario& port : owner.ports)
        {
            if (port.number < 0 || port.number >= limit)
            {
                throw ScenarioError(place,
                                    "expected port numbers 0 to " + std::to_string(limit - 1) + ", got " +
                                        std::to_string(port.number));
            }
            if (port.speedCapability == LinkSpeed::automatic)
            {
                throw ScenarioError(
                    place, "port " + std::to_string(port.number) + ": speedCapability cannot be Auto");
            }
            if (!canRun(port.speedCapability, port.speed))
            {
                throw ScenarioError(place,
                                    "port " + std::to_string(port.number) + ": speed " +
                                        std::string(toText(port.speed)) + " is beyond speedCapability " +
                                        std::string(toText(port.speedCapability)));
            }
            if (!numbers.insert(port.number).second)
                throw ScenarioError(place, "port " + std::to_string(port.number) + " appears twice");
        }
    }

    static void checkChassis(const SwitchScenario& one, const std::string& place)
    {
        in6_addr binary;
        const char* address = one.ipAddress.c_str();
        if (!one.ipAddress.empty() && inet_pton(AF_INET, address, &binary) != 1 &&
            inet_pton(AF_INET6, address, &binary) != 1)
        {
            throw ScenarioError(place + "/ipAddress",
                                "expected an IPv4 or IPv6 address, got \"" + one.ipAddress + "\"");
        }
        for (const PortScenario& port : one.ports)
        {
            if (static_cast<std::size_t>(port.blade) > one.blades.size())
            {
                throw ScenarioError(place + "/ports",
                                    "port " + std::to_string(port.number) + ": the switch has no blade " +
                                        std::to_string(port.blade));
            }
        }
        checkSensors(one, place);
        // A log refuses the entries that it cannot have.
        const EventLog userLog(one.logCapacity, one.userLog, place + "/userLog");
        const EventLog alarmLog(one.logCapacity, one.alarmLog, place + "/alarmLog");
        const CimSubscriptions cim(one.listeners, one.subscriptions, place, 0); // as do these
        checkUsers(one, place + "/users/");
    }

    static void checkUsers(const SwitchScenario& one, const std::string& place)
    {
        std::set<std::string> users;
        for (std::size_t i = 0; i < one.users.size(); ++i)
            if (one.users[i].empty() || !users.insert(one.users[i]).second)
                throw ScenarioError(place + std::to_string(i), "expected a name that no other user has");
    }

    static void checkSensors(const SwitchScenario& one, const std::string& place)
    {
        for (std::size_t i = 0; i < one.temperatureSensors.size(); ++i)
        {
            const TemperatureSensorScenario& sensor = one.temperatureSensors[i];
            if (!inOrder(sensor.warnHigh, sensor.critHigh))
                throw ScenarioError(place + at("temperatureSensors", i, "warnHigh"),
                                    "expected at most critHigh");
        }
        for (std::size_t i = 0; i < one.voltageSensors.size(); ++i)
        {
            const VoltageSensorScenario& sensor = one.voltageSensors[i];
            if (!inOrder(sensor.critLow, sensor.nominal) || !inOrder(sensor.nominal, sensor.critHigh))
                throw ScenarioError(place + at("voltageSensors", i, "nominal"),
                                    "expected a value between critLow and critHigh");
        }
    }

    void checkPort(int domain, int port, const std::string& domainPlace, const std::string& portPlace) const
    {
        const auto found = _ports.find(domain);
        if (found == _ports.end())
            throw ScenarioError(domainPlace, "no switch has domain " + std::to_string(domain));
        if (found->second.count(port) == 0)
        {
            throw ScenarioError(portPlace,
                                "the switch of domain " + std::to_string(domain) + " has no port " +
                                    std::to_string(port));
        }
    }

    void takeForIsl(int domain, int port, const std::string& place)
    {
        if (!_islPorts.emplace(domain, port).second)
            throw ScenarioError(place, "port " + std::to_string(port) + " already has a link");
    }

    void checkIsls()
    {
        for (std::size_t i = 0; i < _scenario.isls.size(); ++i)
        {
            const IslScenario& link = _scenario.isls[i];
            checkPort(link.domain, link.port, at("isls", i, "domain"), at("isls", i, "port"));
            checkPort(link.toDomain, link.toPort, at("isls", i, "toDomain"), at("isls", i, "toPort"));
            takeForIsl(link.domain, link.port, at("isls", i, "port"));
            takeForIsl(link.toDomain, link.toPort, at("isls", i, "toPort"));
        }
    }

    void checkNodes() const
    {
        if (_scenario.nodes.size() > static_cast<std::size_t>(kMaxNodes))
        {
            throw ScenarioError("/nodes",
                                "expected at most " + std::to_string(kMaxNodes) + " nodes, got " +
                                    std::to_string(_scenario.nodes.size()));
        }
        std::map<std::uint32_t, std::size_t> addresses; // with the node that has it
        for (std::size_t i = 0; i < _scenario.nodes.size(); ++i)
        {
            const NodeScenario& node = _scenario.nodes[i];
            checkPort(node.domain, node.port, at("nodes", i, "domain"), at("nodes", i, "port"));
            if (_islPorts.count({node.domain, node.port}) != 0)
            {
                throw ScenarioError(at("nodes", i, "port"),
                                    "port " + std::to_string(node.port) + " has a link to another switch");
            }
            if (node.address == 0)
                continue;
            if (node.address >> 16 != static_cast<std::uint32_t>(node.domain))
            {
                throw ScenarioError(at("nodes", i, "address"),
                                    "expected an address of domain " + std::to_string(node.domain) +
                                        ": the domain is its first byte");
            }
            const auto [holder, isFree] = addresses.emplace(node.address, i);
            if (!isFree)
            {
                throw ScenarioError(at("nodes", i, "address"),
                                    "the address " + hexOf(node.address, 6) + " is taken by " +
                                        at("nodes", holder->second, "address"));
            }
        }
    }

    const Scenario& _scenario;
    std::map<int, std::set<int>> _ports; // port numbers by domain
    std::set<std::pair<int, int>> _islPorts;
};

} // namespace

void validate(const Scenario& scenario)
{
    Validator(scenario).run();
}

} // namespace simulator
