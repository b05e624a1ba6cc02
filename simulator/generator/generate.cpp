// Makes scenarios of any size.
#include "simulator/generator/generate.h"

#include "simulator/model/hex.h"
#include "simulator/model/made_up.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr int kRemotePorts = 24;    // of a remote switch, unless its nodes need more
constexpr int kLargestRemote = 256; // ports; beyond that several nodes share one
constexpr int kAreas = 256;         // second byte of an address
constexpr int kUptimeSeconds = 86400 * 30;

void check(const char* name, int value, int low, int high)
{
    if (value < low || value > high)
    {
        throw ScenarioError(std::string("generator: ") + name,
                            "expected " + std::to_string(low) + " to " + std::to_string(high) + ", got " +
                                std::to_string(value));
    }
}

std::string numbered(const char* stem, int number, int width)
{
    const std::string digits = std::to_string(number);
    const auto zeros = static_cast<std::size_t>(std::max(0, width - static_cast<int>(digits.size())));
    return stem + std::string(zeros, '0') + digits;
}

class Generator
{
  public:
    explicit Generator(const FabricSize& size) : _size(size) {}

    Scenario run()
    {
        checkSize();
        _scenario.seed = _size.seed;
        _scenario.uptimeSeconds = kUptimeSeconds;
        _scenario.principal = 1;
        for (int domain = 1; domain <= _size.domains; ++domain)
            addSwitch(domain);
        for (int domain = 2; domain <= _size.domains; ++domain)
            addLink(domain / 2, domain);
        for (int domain = 1; domain <= _size.domains; ++domain)
            addNodes(domain);
        return std::move(_scenario);
    }

  private:
    void checkSize() const
    {
        check("domains", _size.domains, 1, kMaxDomainId);
        check("localPorts", _size.localPorts, 1, kMaxLocalPorts);
        check("nodes", _size.nodes, 0, kMaxNodes);
        check("seed", _size.seed, 0, 1000000000);
        const int needed = linksOf(1) + (nodesOf(1) > 0 ? 1 : 0);
        if (_size.localPorts < needed)
        {
            throw ScenarioError("generator: localPorts",
                                "this fabric needs at least " + std::to_string(needed) + ", got " +
                                    std::to_string(_size.localPorts));
        }
    }

    // Links to the parent and up to two children.
    int linksOf(int domain) const
    {
        return (domain > 1 ? 1 : 0) + (2 * domain <= _size.domains ? 1 : 0) +
               (2 * domain + 1 <= _size.domains ? 1 : 0);
    }

    int nodesOf(int domain) const
    {
        return _size.nodes / _size.domains + (domain <= _size.nodes % _size.domains ? 1 : 0);
    }

    int portsOf(int domain) const
    {
        return domain == 1 ? _size.localPorts
                           : std::clamp(linksOf(domain) + nodesOf(domain), kRemotePorts, kLargestRemote);
    }

    std::uint64_t made(int domain, int place) const
    {
        return mix(static_cast<std::uint64_t>(_size.seed),
                   static_cast<std::uint64_t>(domain) << 20 | static_cast<std::uint64_t>(place));
    }

    void addSwitch(int domain)
    {
        SwitchScenario one;
        one.domain = domain;
        one.local = domain == 1;
        // Made-up vendor, numbered by domain: unique in the fabric.
        one.wwn = "100002a5" + hexOf(static_cast<std::uint64_t>(_size.seed) & 0xFFFFU, 4) +
                  hexOf(static_cast<std::uint64_t>(domain), 4);
        one.name = numbered("sw-", domain, 3);
        for (int number = 0; number < portsOf(domain); ++number)
        {
            PortScenario port;
            port.number = number;
            if (one.local)
            {
                const std::uint64_t luck = made(domain, number);
                port.rxLoadPercent = static_cast<int>(luck % 60);
                port.txLoadPercent = static_cast<int>((luck >> 8) % 60);
                port.errorsPerHour = (luck >> 16) % 16 == 0 ? static_cast<int>((luck >> 24) % 100) : 0;
            }
            one.ports.push_back(port);
        }
        _scenario.switches.push_back(std::move(one));
        _nextPort.push_back(0);
    }

    // Links take the lowest ports.
    int takePort(int domain) { return _nextPort[static_cast<std::size_t>(domain - 1)]++; }

    void addLink(int parent, int child)
    {
        IslScenario link;
        link.domain = parent;
        link.port = takePort(parent);
        link.toDomain = child;
        link.toPort = takePort(child);
        _scenario.isls.push_back(link);
    }

    void addNodes(int domain)
    {
        const int first = _nextPort[static_cast<std::size_t>(domain - 1)];
        const int free = portsOf(domain) - first;
        for (int i = 0; i < nodesOf(domain); ++i)
        {
            NodeScenario node;
            node.domain = domain;
            node.port = first + i % free;
            node.address = addressOf(domain, node.port, i / free);
            describe(node, i);
            _scenario.nodes.push_back(std::move(node));
        }
    }

    // The port is the area and the place on the port the last byte, as long as the domain's nodes fit in so;
    // if not, places and ports are counted through.
    std::uint32_t addressOf(int domain, int port, int place) const
    {
        const int ports = portsOf(domain);
        const bool byArea = ports <= kAreas && nodesOf(domain) <= (ports - linksOf(domain)) * 256;
        const int low = byArea ? port << 8 | place : place * ports + port;
        return static_cast<std::uint32_t>(domain) << 16 | static_cast<std::uint32_t>(low);
    }

    void describe(NodeScenario& node, int place) const
    {
        const bool host = made(node.domain, 0x10000 + place) % 3 == 0;
        const std::string number = hexOf(node.address, 6);
        node.role = host ? NodeRole::initiator : NodeRole::target;
        node.portWwn = std::string(host ? "210002B7" : "502B7C90") + upperCase("00" + number);
        node.nodeWwn = std::string(host ? "200002B7" : "502B7C80") + upperCase("00" + number);
        const std::string owner = std::to_string(node.domain) + "-" + std::to_string(place);
        node.nodeName = (host ? "host-" : "array-") + owner;
        node.portName = node.nodeName + (host ? " hba0" : " port0");
        node.speed = made(node.domain, 0x20000 + place) % 4 == 0 ? LinkSpeed::gb4 : LinkSpeed::gb8;
    }

    FabricSize _size;
    Scenario _scenario;
    std::vector<int> _nextPort; // by domain - 1
};

} // namespace

Scenario generateFabric(const FabricSize& size)
{
    return Generator(size).run();
}

} // namespace simulator
