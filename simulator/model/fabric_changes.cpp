// Switches, nodes and links that come and go.
#include "simulator/model/FabricModel.h"
#include "simulator/model/hex.h"
#include "simulator/model/made_up.h"
#include "simulator/scenario/fields.h"

#include <algorithm>
#include <utility>

namespace simulator
{
namespace
{

constexpr std::uint32_t kAddressesPerDomain = 0x10000;

std::string noSuch(const char* what, int number)
{
    return std::string("no ") + what + " " + std::to_string(number);
}

void countNode(Port& port, const Node& node)
{
    const auto place = std::lower_bound(port.attached.begin(), port.attached.end(), node.address());
    port.attached.insert(place, node.address());
    port.initiators = port.initiators || node.role() == NodeRole::initiator;
    port.loop = port.loop || node.type() == NodePortType::nl;
    const bool slowest = port.nodeSpeed == LinkSpeed::automatic || node.speed() < port.nodeSpeed;
    if (slowest && node.speed() != LinkSpeed::automatic)
        port.nodeSpeed = node.speed();
}

void countNodesAgain(const Switch& owner, Port& port)
{
    const std::vector<std::uint32_t> before = std::exchange(port.attached, {});
    port.initiators = port.loop = false;
    port.nodeSpeed = LinkSpeed::automatic;
    for (const std::uint32_t address : before)
    {
        const auto node = owner.nodes.find(address);
        if (node != owner.nodes.end())
            countNode(port, node->second);
    }
}

// A port that can take a link to another switch.
Port& freePort(Switch& owner, int number)
{
    Port* port = owner.port(number);
    if (port == nullptr || port->peer || !port->attached.empty())
    {
        throw ScenarioError("",
                            noSuch("free port", number) + " in domain " + std::to_string(owner.facts.domain));
    }
    return *port;
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
            return domain | candidate;
        candidate = (candidate + 1) % kAddressesPerDomain;
    }
    return 0;
}

// Gives the local switch the texts that its scenario leaves to it.
void fillInTexts(SwitchScenario& facts, std::uint64_t seed)
{
    constexpr std::uint64_t kSerials = 10000000;
    const auto give = [](std::optional<std::string>& text, const std::string& otherwise)
    {
        if (!text)
            text = otherwise;
    };
    give(facts.chassisSerialNumber, "TV" + std::to_string(kSerials + mix(seed, 0) % (9 * kSerials)));
    give(facts.product.name, facts.type);
    give(facts.product.elementName, facts.brand + (facts.brand.empty() ? "" : " ") + facts.type);
    give(facts.product.identifyingNumber, *facts.chassisSerialNumber);
    give(facts.product.vendor, facts.brand);
}

} // namespace

Switch& FabricModel::switchWith(int domain)
{
    Switch* found = switchOf(domain);
    if (found == nullptr)
        throw ScenarioError("", noSuch("switch with domain", domain));
    return *found;
}

void FabricModel::addSwitch(const SwitchScenario& facts, std::uint64_t now)
{
    const auto inserted = _switches.emplace(facts.domain, Switch());
    if (!inserted.second)
        throw ScenarioError("", "domain " + std::to_string(facts.domain) + " is taken");
    Switch& added = inserted.first->second;
    added.facts = facts;
    std::vector<PortScenario>().swap(added.facts.ports); // with its memory
    const std::uint64_t switchSeed = mix(_seed, static_cast<std::uint64_t>(facts.domain));
    added.seed = switchSeed;
    added.ports.reserve(facts.ports.size());
    for (const PortScenario& port : facts.ports)
    {
        added.ports.emplace_back(port, mix(switchSeed, static_cast<std::uint64_t>(port.number)), facts.local);
        if (added.ports.back().facts.wwn.empty())
            added.ports.back().facts.wwn = portWwn(facts.wwn, port.number);
        added.ports.back().toldState = operState(added, added.ports.back());
    }
    std::sort(added.ports.begin(),
              added.ports.end(),
              [](const Port& a, const Port& b) { return a.facts.number < b.facts.number; });
    if (facts.local)
    {
        _local = &added;
        if (added.facts.preferredDomain == 0)
            added.facts.preferredDomain = facts.domain;
        if (added.facts.reserved.empty())
            added.facts.reserved = madeUpBytes(switchSeed, kSwitchReservedSize);
        fillInTexts(added.facts, switchSeed);
    }
    added.toldStatus = statusOfSwitch(toText(added.facts.adminState), added.facts.faults);
    allLinksChanged(added, now);
    switchCame(added, now);
}

void FabricModel::removeSwitch(int domain, std::uint64_t now)
{
    const Switch* gone = switchOf(domain);
    if (gone == nullptr || gone == _local)
        throw ScenarioError("", noSuch("remote switch with domain", domain));
    const auto touches = [domain](const IslScenario& link)
    { return link.domain == domain || link.toDomain == domain; };
    for (const IslScenario& link : _isls)
    {
        if (touches(link))
        {
            const bool gotFrom = link.domain == domain;
            Switch& other = *switchOf(gotFrom ? link.toDomain : link.domain);
            Port& port = *other.port(gotFrom ? link.toPort : link.port);
            port.peer.reset();
            port.isolated = port.joined = false;
            linkChanged(other, port, now);
        }
    }
    _isls.erase(std::remove_if(_isls.begin(), _isls.end(), touches), _isls.end());
    switchGoes(*gone, now);
    const std::string fabric = fabricWwn();
    _switches.erase(domain);
    if (_principal == domain)
        _principal = _switches.begin()->first;
    principalChanged(fabric, now);
    switchesJoinOrPart(now);
}

void FabricModel::setSwitchState(int domain, AdminState state, std::uint64_t now)
{
    Switch& one = switchWith(domain);
    one.facts.adminState = state;
    allLinksChanged(one, now);
}

void FabricModel::addNode(NodeScenario node, std::uint64_t now)
{
    Switch& owner = switchWith(node.domain);
    Port* port = owner.port(node.port);
    if (port == nullptr || port->peer)
    {
        throw ScenarioError(
            "", noSuch("port for nodes", node.port) + " in domain " + std::to_string(node.domain));
    }
    const bool given = node.address != 0;
    if (!given)
        node.address = freeAddress(owner, node.port);
    if (node.nodeWwn.empty())
        node.nodeWwn = node.portWwn;
    if (node.address == 0 || owner.nodes.count(node.address) != 0)
    {
        const std::string fault =
            given ? "address " + hexOf(node.address, 6) + " is taken: " : "no free address: ";
        throw ScenarioError("", fault + node.portWwn + " in domain " + std::to_string(node.domain));
    }
    const auto added = owner.nodes.emplace(node.address, Node(node)).first;
    countNode(*port, added->second);
    linkChanged(owner, *port, now);
}

void FabricModel::removeNode(std::string_view portWwn, std::uint64_t now)
{
    const std::string wanted = upperCase(portWwn);
    for (auto& one : _switches)
    {
        Switch& owner = one.second;
        for (auto node = owner.nodes.begin(); node != owner.nodes.end(); ++node)
        {
            if (upperCase(node->second.text(&NodeScenario::portWwn)) == wanted)
            {
                Port& port = *owner.port(node->second.port());
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
    Switch& from = switchWith(link.domain);
    Switch& to = switchWith(link.toDomain);
    Port& fromPort = freePort(from, link.port);
    Port& toPort = freePort(to, link.toPort);
    fromPort.peer = PortPlace{link.toDomain, link.toPort};
    toPort.peer = PortPlace{link.domain, link.port};
    fromPort.isolated = toPort.isolated = link.isolated;
    tellPeer(from, fromPort, toPort);
    tellPeer(to, toPort, fromPort);
    _isls.push_back(link);
    linkChanged(from, fromPort, now);
    linkChanged(to, toPort, now);
}

void FabricModel::changePort(int number, const std::function<void(PortScenario&)>& change, std::uint64_t now)
{
    Port* port = _local->port(number);
    if (port == nullptr)
        throw ScenarioError("", noSuch("port", number) + " on the local switch");
    PortScenario facts = port->facts;
    change(facts);
    facts.number = number;
    port->facts = facts;
    port->meter->setLoad(loadOf(facts), now);
    linkChanged(*_local, *port, now);
}

} // namespace simulator
