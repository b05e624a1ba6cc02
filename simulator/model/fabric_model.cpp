// The state of a simulated fabric.
#include "simulator/model/fabric_model.h"

#include "simulator/model/hex.h"
#include "simulator/scenario/fields.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr std::uint32_t kAddressesPerDomain = 0x10000;

std::vector<std::uint8_t> madeUpBytes(std::uint64_t seed, std::size_t size)
{
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
    {
        bytes[i] = static_cast<std::uint8_t>(mix(seed, i) >> 56);
    }
    return bytes;
}

template <class Ports>
auto firstFrom(Ports& ports, int number)
{
    return std::lower_bound(ports.begin(),
                            ports.end(),
                            number,
                            [](const Port& port, int wanted) { return port.facts.number < wanted; });
}

std::string noSuch(const char* what, int number)
{
    return std::string("no ") + what + " " + std::to_string(number);
}

void countNode(Port& port, const NodeScenario& node)
{
    ++port.nodes;
    port.initiators = port.initiators || node.role == NodeRole::initiator;
    port.loop = port.loop || node.type == NodePortType::nl;
    const bool slowest = port.nodeSpeed == LinkSpeed::automatic || node.speed < port.nodeSpeed;
    if (slowest && node.speed != LinkSpeed::automatic)
    {
        port.nodeSpeed = node.speed;
    }
}

void countNodesAgain(const Switch& owner, Port& port)
{
    port.nodes = 0;
    port.initiators = port.loop = false;
    port.nodeSpeed = LinkSpeed::automatic;
    for (const auto& one : owner.nodes)
    {
        if (one.second.port == port.facts.number)
        {
            countNode(port, one.second);
        }
    }
}

// The lowest free address of the port's area, or the next free one after it. 0 when the domain is full.
std::uint32_t freeAddress(const Switch& owner, int port)
{
    const std::uint32_t domain = static_cast<std::uint32_t>(owner.facts.domain) << 16;
    const std::uint32_t area = (static_cast<std::uint32_t>(port) & 0xFFU) << 8;
    std::uint32_t candidate = area;
    for (std::uint32_t tried = 0; tried < kAddressesPerDomain; ++tried)
    {
        if (owner.nodes.count(domain | candidate) == 0)
        {
            return domain | candidate;
        }
        candidate = (candidate + 1) % kAddressesPerDomain;
    }
    return 0;
}

} // namespace

Load loadOf(const PortScenario& facts)
{
    Load load;
    load.rxPercent = facts.rxLoadPercent;
    load.txPercent = facts.txLoadPercent;
    load.frameBytes = facts.frameBytes;
    load.class2Percent = facts.class2Percent;
    load.errorsPerHour = facts.errorsPerHour;
    return load;
}

Port::Port(const PortScenario& given, std::uint64_t seed) : facts(given), meter(seed, loadOf(given))
{
    if (facts.name.empty())
    {
        facts.name = "Port" + std::to_string(facts.number);
    }
    if (facts.reserved.empty())
    {
        facts.reserved = madeUpBytes(seed, kPortReservedSize);
    }
}

Port* Switch::port(int number)
{
    const auto found = firstFrom(ports, number);
    return found != ports.end() && found->facts.number == number ? &*found : nullptr;
}

const Port* Switch::port(int number) const
{
    const auto found = firstFrom(ports, number);
    return found != ports.end() && found->facts.number == number ? &*found : nullptr;
}

const Port* Switch::portAfter(int number) const
{
    const auto found = firstFrom(ports, number + 1);
    return found != ports.end() ? &*found : nullptr;
}

FabricModel::FabricModel(const Scenario& scenario)
    : _seed(static_cast<std::uint64_t>(scenario.seed)),
      _startTime(static_cast<std::uint64_t>(scenario.uptimeSeconds) * 1000)
{
    validate(scenario);
    // Counters of ports that are up at the start have run since time zero: the links below come up at 0.
    for (const SwitchScenario& one : scenario.switches)
    {
        addSwitch(one, 0);
    }
    for (const IslScenario& link : scenario.isls)
    {
        addIsl(link, 0);
    }
    for (const NodeScenario& node : scenario.nodes)
    {
        addNode(node, 0);
    }
    if (!scenario.noPrincipal)
    {
        _principal = scenario.principal != 0 ? scenario.principal : _switches.begin()->first;
    }
}

const Port* FabricModel::localPort(std::string_view index) const
{
    int number = 0;
    const bool padded = index.size() > 1 && index.front() == '0';
    return !padded && parseDecimal(index, number) ? local().port(number) : nullptr;
}

Port* FabricModel::localPort(std::string_view index)
{
    const Port* found = static_cast<const FabricModel&>(*this).localPort(index);
    return found != nullptr ? local().port(found->facts.number) : nullptr;
}

Switch* FabricModel::switchOf(int domain)
{
    const auto found = _switches.find(domain);
    return found != _switches.end() ? &found->second : nullptr;
}

const Switch* FabricModel::switchOf(int domain) const
{
    const auto found = _switches.find(domain);
    return found != _switches.end() ? &found->second : nullptr;
}

const Switch* FabricModel::principal() const
{
    return switchOf(_principal);
}

const NodeScenario* FabricModel::node(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
    {
        return nullptr;
    }
    const auto found = owner->nodes.find(address);
    if (found == owner->nodes.end() || !isOnline(*owner, *owner->port(found->second.port)))
    {
        return nullptr;
    }
    return &found->second;
}

const NodeScenario* FabricModel::nodeAfter(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
    {
        return nullptr;
    }
    const auto found =
        std::find_if(owner->nodes.upper_bound(address),
                     owner->nodes.end(),
                     [owner](const auto& one) { return isOnline(*owner, *owner->port(one.second.port)); });
    return found != owner->nodes.end() ? &found->second : nullptr;
}

void FabricModel::addSwitch(const SwitchScenario& facts, std::uint64_t now)
{
    const auto inserted = _switches.emplace(facts.domain, Switch());
    if (!inserted.second)
    {
        throw ScenarioError("", "domain " + std::to_string(facts.domain) + " is taken");
    }
    Switch& added = inserted.first->second;
    added.facts = facts;
    added.facts.ports.clear();
    const std::uint64_t switchSeed = mix(_seed, static_cast<std::uint64_t>(facts.domain));
    added.ports.reserve(facts.ports.size());
    for (const PortScenario& port : facts.ports)
    {
        added.ports.emplace_back(port, mix(switchSeed, static_cast<std::uint64_t>(port.number)));
        if (added.ports.back().facts.wwn.empty())
        {
            added.ports.back().facts.wwn = portWwn(facts.wwn, port.number);
        }
    }
    std::sort(added.ports.begin(),
              added.ports.end(),
              [](const Port& a, const Port& b) { return a.facts.number < b.facts.number; });
    if (facts.local)
    {
        _local = &added;
        if (added.facts.preferredDomain == 0)
        {
            added.facts.preferredDomain = facts.domain;
        }
        if (added.facts.reserved.empty())
        {
            added.facts.reserved = madeUpBytes(switchSeed, kSwitchReservedSize);
        }
    }
    allLinksChanged(added, now);
}

void FabricModel::removeSwitch(int domain, std::uint64_t now)
{
    const Switch* gone = switchOf(domain);
    if (gone == nullptr || gone == _local)
    {
        throw ScenarioError("", noSuch("remote switch with domain", domain));
    }
    const auto touches = [domain](const IslScenario& link)
    { return link.domain == domain || link.toDomain == domain; };
    for (const IslScenario& link : _isls)
    {
        if (touches(link))
        {
            const bool gotFrom = link.domain == domain;
            Switch& other = *switchOf(gotFrom ? link.toDomain : link.domain);
            Port& port = *other.port(gotFrom ? link.toPort : link.port);
            port.isl = port.isolated = false;
            linkChanged(other, port, now);
        }
    }
    _isls.erase(std::remove_if(_isls.begin(), _isls.end(), touches), _isls.end());
    _switches.erase(domain);
    if (_principal == domain)
    {
        _principal = _switches.begin()->first;
    }
}

void FabricModel::addNode(NodeScenario node, std::uint64_t now)
{
    Switch* owner = switchOf(node.domain);
    Port* port = owner != nullptr ? owner->port(node.port) : nullptr;
    if (port == nullptr)
    {
        throw ScenarioError("", noSuch("port", node.port) + " in domain " + std::to_string(node.domain));
    }
    if (node.address == 0)
    {
        node.address = freeAddress(*owner, node.port);
    }
    if (node.nodeWwn.empty())
    {
        node.nodeWwn = node.portWwn;
    }
    if (node.address == 0 || !owner->nodes.emplace(node.address, node).second)
    {
        throw ScenarioError(
            "", "no free address for " + node.portWwn + " in domain " + std::to_string(node.domain));
    }
    countNode(*port, node);
    linkChanged(*owner, *port, now);
}

void FabricModel::removeNode(std::string_view portWwn, std::uint64_t now)
{
    const std::string wanted = upperCase(portWwn);
    for (auto& one : _switches)
    {
        Switch& owner = one.second;
        for (auto node = owner.nodes.begin(); node != owner.nodes.end(); ++node)
        {
            if (upperCase(node->second.portWwn) == wanted)
            {
                Port& port = *owner.port(node->second.port);
                owner.nodes.erase(node);
                countNodesAgain(owner, port);
                linkChanged(owner, port, now);
                return;
            }
        }
    }
    throw ScenarioError("", "no node " + std::string(portWwn));
}

void FabricModel::addIsl(const IslScenario& link, std::uint64_t now)
{
    const std::pair<int, int> ends[] = {{link.domain, link.port}, {link.toDomain, link.toPort}};
    for (const auto& end : ends)
    {
        Switch* owner = switchOf(end.first);
        Port* port = owner != nullptr ? owner->port(end.second) : nullptr;
        if (port == nullptr)
        {
            throw ScenarioError("", noSuch("port", end.second) + " in domain " + std::to_string(end.first));
        }
        port->isl = true;
        port->isolated = link.isolated;
        linkChanged(*owner, *port, now);
    }
    _isls.push_back(link);
}

void FabricModel::linkChanged(const Switch& owner, Port& port, std::uint64_t now) const
{
    if (owner.facts.local)
    {
        port.meter.setLink(linkSpeed(owner, port), now);
    }
}

void FabricModel::allLinksChanged(Switch& owner, std::uint64_t now) const
{
    for (Port& port : owner.ports)
    {
        linkChanged(owner, port, now);
    }
}

Scenario FabricModel::toScenario() const
{
    Scenario scenario;
    scenario.seed = static_cast<int>(_seed);
    scenario.uptimeSeconds = static_cast<int>(_startTime / 1000);
    scenario.principal = _principal;
    scenario.noPrincipal = _principal == 0;
    scenario.isls = _isls;
    for (const auto& one : _switches)
    {
        scenario.switches.push_back(one.second.facts);
        for (const Port& port : one.second.ports)
        {
            scenario.switches.back().ports.push_back(port.facts);
        }
        for (const auto& node : one.second.nodes)
        {
            scenario.nodes.push_back(node.second);
        }
    }
    return scenario;
}

} // namespace simulator
