// What can happen around the local switch: nodes, other switches, links.
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

constexpr std::size_t kWwnDigits = 16;

std::string wwnOf(const std::string& value)
{
    if (!isHex(value, kWwnDigits))
        throw UsageError("expected a WWN of 16 hexadecimal digits, got \"" + value + '"');
    return value;
}

template <class Change> // void(FabricModel& model, uint64_t now)
std::string change(Change one)
{
    Engine::instance().changeFabric(one);
    return {};
}

template <NodeRole ROLE>
std::string addNode(const Words& values)
{
    NodeScenario node;
    node.domain = numberOf(values[0], "domain");
    node.port = numberOf(values[1], "port");
    node.portWwn = wwnOf(values[2]);
    node.role = ROLE;
    return change([&node](FabricModel& model, std::uint64_t now) { model.addNode(node, now); });
}

std::string removeNode(const Words& values)
{
    return change([&](FabricModel& model, std::uint64_t now) { model.removeNode(wwnOf(values[0]), now); });
}

// A switch of so many ports, all of them working.
std::string addSwitch(const Words& values)
{
    SwitchScenario one;
    one.domain = numberOf(values[0], "domain");
    one.wwn = wwnOf(values[1]);
    const int ports = numberOf(values[2], "ports");
    if (ports > kMaxRemotePorts)
        throw UsageError("ports: at most " + std::to_string(kMaxRemotePorts));
    for (int number = 0; number < ports; ++number)
    {
        PortScenario port;
        port.number = number;
        one.ports.push_back(port);
    }
    return change([&one](FabricModel& model, std::uint64_t now) { model.addSwitch(one, now); });
}

std::string removeSwitch(const Words& values)
{
    const int domain = numberOf(values[0], "domain");
    return change([domain](FabricModel& model, std::uint64_t now) { model.removeSwitch(domain, now); });
}

template <AdminState STATE>
std::string setSwitchState(const Words& values)
{
    const int domain = numberOf(values[0], "domain");
    return change([domain](FabricModel& model, std::uint64_t now)
                  { model.setSwitchState(domain, STATE, now); });
}

std::string setPrincipal(const Words& values)
{
    const int domain = numberOf(values[0], "domain");
    return change(
        [domain](FabricModel& model, std::uint64_t now)
        {
            if (model.switchOf(domain) == nullptr)
                throw Refusal("there is no switch with domain " + std::to_string(domain));
            model.setPrincipal(domain, now);
        });
}

std::string removeFabric(const Words&)
{
    return change([](FabricModel& model, std::uint64_t now) { model.setPrincipal(0, now); });
}

IslScenario linkOf(const Words& values)
{
    IslScenario link;
    link.domain = numberOf(values[0], "domain");
    link.port = numberOf(values[1], "port");
    link.toDomain = numberOf(values[2], "domain");
    link.toPort = numberOf(values[3], "port");
    return link;
}

std::string addLink(const Words& values)
{
    const IslScenario link = linkOf(values);
    return change([&link](FabricModel& model, std::uint64_t now) { model.addIsl(link, now); });
}

} // namespace

std::vector<Verb> fabricVerbs()
{
    return {
        {"node add DOMAIN PORT WWN", "a target logs in at a port of a switch", addNode<NodeRole::target>},
        {"node add DOMAIN PORT WWN initiator", "an initiator logs in", addNode<NodeRole::initiator>},
        {"node remove WWN", "a node port logs out", removeNode},
        {"switch add DOMAIN WWN PORTS", "a switch comes, still without links", addSwitch},
        {"switch remove DOMAIN", "a switch goes, and its links with it", removeSwitch},
        {"switch DOMAIN online", "any switch is switched on", setSwitchState<AdminState::online>},
        {"switch DOMAIN offline", "any switch is switched off", setSwitchState<AdminState::offline>},
        {"switch DOMAIN principal", "it becomes the principal switch", setPrincipal},
        {"fabric remove", "no switch is the principal one, until one becomes it", removeFabric},
        {"link add DOMAIN PORT DOMAIN PORT", "a cable between two switches is plugged in", addLink},
    };
}

} // namespace simulator
