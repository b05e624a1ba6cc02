// The state of a simulated fabric.
#include "simulator/model/FabricModel.h"

#include "simulator/model/configuration.h"
#include "simulator/model/hex.h"
#include "simulator/model/made_up.h"
#include "simulator/model/zoning_scenario.h"
#include "simulator/scenario/fields.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace simulator
{
namespace
{

template <class Ports>
auto firstFrom(Ports& ports, int number)
{
    return std::lower_bound(ports.begin(),
                            ports.end(),
                            number,
                            [](const Port& port, int wanted) { return port.facts.number < wanted; });
}

// Validation says whether there is a local switch.
const SwitchScenario& localOf(const Scenario& scenario)
{
    static const SwitchScenario none;
    for (const SwitchScenario& one : scenario.switches)
        if (one.local)
            return one;
    return none;
}

SwitchLogs logsOf(const SwitchScenario& facts)
{
    return SwitchLogs(facts.logEnabled,
                      EventLog(facts.logCapacity, facts.userLog, "/userLog"),
                      EventLog(facts.logCapacity, facts.alarmLog, "/alarmLog"));
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

Port::Port(const PortScenario& given, std::uint64_t seed, bool local) : facts(given)
{
    if (facts.name.empty())
        facts.name = "Port" + std::to_string(facts.number);
    if (!local)
        return;
    meter = std::make_unique<TrafficMeter>(seed, loadOf(facts));
    if (facts.reserved.empty())
        facts.reserved = madeUpBytes(seed, kPortReservedSize);
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
      _startTime(static_cast<std::uint64_t>(scenario.uptimeSeconds) * 1000),
      _zoning{databaseOf(scenario.zoning), std::nullopt, scenario.zoning.defaultZone, std::nullopt},
      _history(logsOf(localOf(scenario)), _startTime), _cim(localOf(scenario).listeners,
                                                            localOf(scenario).subscriptions,
                                                            "",
                                                            _history.wallClock().seconds(_startTime))
{
    validate(scenario);
    // Counters of ports that are up at the start have run since time zero: the links below come up at 0.
    for (const SwitchScenario& one : scenario.switches)
        addSwitch(one, 0);
    for (const IslScenario& link : scenario.isls)
        addIsl(link, 0);
    // Addresses that are given are taken before the others look for a free one, whatever the order.
    for (const bool given : {true, false})
    {
        for (const NodeScenario& node : scenario.nodes)
            if ((node.address != 0) == given)
                addNode(node, 0);
    }
    _local->facts.userLog.clear(); // they are in the logs, and what follows is in _cim
    _local->facts.alarmLog.clear();
    _local->facts.listeners.clear();
    _local->facts.subscriptions.clear();
    // Who holds the mode is no property of the switch: it is not saved.
    if (const std::string holder = std::exchange(_local->facts.adminModeHolder, {}); !holder.empty())
        _adminMode.take(holder);
    if (!scenario.noPrincipal)
        _principal = scenario.principal != 0 ? scenario.principal : _switches.begin()->first;
    if (auto active = activeSetOf(scenario.zoning, _zoning.configured))
        setActiveZoneSet(*_local, std::make_shared<const ActiveZoneSet>(std::move(*active)), Reach::all);
    catchUp(_startTime);
    _history.start();
}

const Port* FabricModel::localPort(std::string_view index) const
{
    int number = 0;
    return parseIndex(index, number) ? local().port(number) : nullptr;
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

std::string FabricModel::fabricWwn() const
{
    const Switch* first = principal();
    return first != nullptr ? first->facts.wwn : std::string();
}

SwitchEvent FabricModel::event(xpl_SwitchEventType type) const
{
    SwitchEvent one;
    one.type = type;
    one.switchWwn = local().facts.wwn;
    return one;
}

SwitchEvent FabricModel::fabricEvent(xpl_SwitchEventType type) const
{
    SwitchEvent one = event(type);
    one.fabricWwn = fabricWwn();
    return one;
}

const Node* FabricModel::node(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
        return nullptr;
    const auto found = owner->nodes.find(address);
    if (found == owner->nodes.end() || !isOnline(*owner, *owner->port(found->second.port())))
        return nullptr;
    return &found->second;
}

const Node* FabricModel::nodeAfter(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
        return nullptr;
    const auto found =
        std::find_if(owner->nodes.upper_bound(address),
                     owner->nodes.end(),
                     [owner](const auto& one) { return isOnline(*owner, *owner->port(one.second.port())); });
    return found != owner->nodes.end() ? &found->second : nullptr;
}

void tellPeer(const Switch& owner, const Port& port, Port& peer)
{
    peer.peerSends = sends(owner, port);
    peer.peerJoins = joinsSwitches(port.facts.type);
}

void FabricModel::linkChanged(Switch& owner, Port& port, std::uint64_t now)
{
    const auto follow = [this, now](Switch& of, Port& one)
    {
        portChanged(of, one, now);
        if (!of.facts.local)
            return;
        one.meter->setLink(linkSpeed(of, one), now);
        const int carried = isOnline(of, one) ? one.facts.rxLoadPercent + one.facts.txLoadPercent : 0;
        of.carriedPercent += carried - std::exchange(one.carriedPercent, carried);
        warmthChanged(now);
    };
    follow(owner, port);
    if (port.peer)
    {
        Switch& other = *switchOf(port.peer->domain);
        Port& end = *other.port(port.peer->port);
        tellPeer(owner, port, end);
        follow(other, end);
        const bool joined = isOnline(owner, port);
        if (std::exchange(port.joined, joined) != joined)
        {
            end.joined = joined;
            switchesJoinOrPart(now);
        }
        mergeZoning(owner, port, now);
    }
}

void FabricModel::configurationWritten(std::string_view what, std::uint64_t now)
{
    _history.log("config", "written: " + std::string(what), now);
}

void FabricModel::allLinksChanged(Switch& owner, std::uint64_t now)
{
    switchStatusChanged(owner, now);
    for (Port& port : owner.ports)
        linkChanged(owner, port, now);
    if (owner.facts.local)
        warmthChanged(now);
}

void FabricModel::restoreConfiguration(const Scenario& image, std::uint64_t now)
{
    // Everything that can be refused is before the first change.
    Scenario next = withConfiguration(toScenario(), image);
    ZoningDatabase configured = databaseOf(next.zoning);
    auto active = activeSetOf(next.zoning, configured);
    const SwitchScenario& facts = localSwitchOf(next);

    _history.log("config", "restored from an image", now);
    logs().enable(facts.logEnabled);
    configureAs(_local->facts, facts);
    for (const PortScenario& port : facts.ports)
        configureAs(_local->port(port.number)->facts, port);
    allLinksChanged(*_local, now);

    _zoning.configured = std::move(configured);
    _zoning.defaultZone = next.zoning.defaultZone;
    zoningChanged(ZoningChange::Kind::databaseChanged, kImageRestore, now);
    if (active)
    {
        setActiveZoneSet(*_local, std::make_shared<const ActiveZoneSet>(std::move(*active)), Reach::all);
        zoningChanged(ZoningChange::Kind::activated, kImageRestore, now);
    }
    else if (_local->activeZoneSet != nullptr)
    {
        setActiveZoneSet(*_local, nullptr, Reach::all);
        zoningChanged(ZoningChange::Kind::deactivated, kImageRestore, now);
    }
}

void FabricModel::restorationRefused(const std::string& reason, std::uint64_t now)
{
    _history.log("config", reason, now);
}

Scenario FabricModel::withoutSwitches() const
{
    Scenario scenario;
    scenario.seed = static_cast<int>(_seed);
    scenario.uptimeSeconds = static_cast<int>(_startTime / 1000);
    scenario.principal = _principal;
    scenario.noPrincipal = _principal == 0;
    scenario.zoning = zoningScenarioOf(_zoning.configured, local().activeZoneSet.get(), _zoning.defaultZone);
    return scenario;
}

SwitchScenario FabricModel::scenarioOf(const Switch& one) const
{
    SwitchScenario facts = one.facts;
    if (facts.local)
    {
        facts.logEnabled = logs().enabled();
        facts.userLog = logs()[LogKind::user].texts();
        facts.alarmLog = logs()[LogKind::alarm].texts();
        facts.listeners = _cim.listenerScenarios();
        facts.subscriptions = _cim.subscriptionScenarios();
    }
    for (const Port& port : one.ports)
        facts.ports.push_back(port.facts);
    return facts;
}

Scenario FabricModel::toScenario() const
{
    Scenario scenario = withoutSwitches();
    scenario.isls = _isls;
    for (const auto& one : _switches)
    {
        scenario.switches.push_back(scenarioOf(one.second));
        for (const auto& node : one.second.nodes)
            scenario.nodes.push_back(node.second.facts());
    }
    return scenario;
}

Scenario FabricModel::localScenario() const
{
    Scenario scenario = withoutSwitches();
    scenario.switches.push_back(scenarioOf(local()));
    return scenario;
}

} // namespace simulator
