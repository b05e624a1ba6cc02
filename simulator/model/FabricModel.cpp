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
SwitchLogs logsOf(const Scenario& scenario)
{
    SwitchScenario none;
    const SwitchScenario* facts = &none;
    for (const SwitchScenario& one : scenario.switches)
        if (one.local)
            facts = &one;
    return SwitchLogs(facts->logEnabled,
                      EventLog(facts->logCapacity, facts->userLog, "/userLog"),
                      EventLog(facts->logCapacity, facts->alarmLog, "/alarmLog"));
}

// In the logs.
std::string nameOf(const Port& port)
{
    return "port " + std::to_string(port.facts.number);
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
        facts.name = "Port" + std::to_string(facts.number);
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
      _logs(logsOf(scenario))
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
    _local->facts.userLog.clear(); // they are in the logs
    _local->facts.alarmLog.clear();
    // Who holds the mode is no property of the switch: it is not saved.
    if (const std::string holder = std::exchange(_local->facts.adminModeHolder, {}); !holder.empty())
        _adminMode.take(holder);
    if (!scenario.noPrincipal)
        _principal = scenario.principal != 0 ? scenario.principal : _switches.begin()->first;
    if (auto active = activeSetOf(scenario.zoning, _zoning.configured))
        setActiveZoneSet(*_local, std::make_shared<const ActiveZoneSet>(std::move(*active)), Reach::all);
    for (Port& port : _local->ports)
        logInsChanged(port, _startTime);
    _logs.start(_startTime);
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

const NodeScenario* FabricModel::node(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
        return nullptr;
    const auto found = owner->nodes.find(address);
    if (found == owner->nodes.end() || !isOnline(*owner, *owner->port(found->second.port)))
        return nullptr;
    return &found->second;
}

const NodeScenario* FabricModel::nodeAfter(int domain, std::uint32_t address) const
{
    const Switch* owner = switchOf(domain);
    if (owner == nullptr)
        return nullptr;
    const auto found =
        std::find_if(owner->nodes.upper_bound(address),
                     owner->nodes.end(),
                     [owner](const auto& one) { return isOnline(*owner, *owner->port(one.second.port)); });
    return found != owner->nodes.end() ? &found->second : nullptr;
}

void FabricModel::linkChanged(Switch& owner, Port& port, std::uint64_t now)
{
    const auto runMeter = [this, now](Switch& of, Port& one)
    {
        if (!of.facts.local)
            return;
        one.meter.setLink(linkSpeed(of, one), now);
        const int carried = isOnline(of, one) ? one.facts.rxLoadPercent + one.facts.txLoadPercent : 0;
        portStateChanged(one, now);
        of.carriedPercent += carried - std::exchange(one.carriedPercent, carried);
        warmthChanged(now);
    };
    runMeter(owner, port);
    if (port.peer)
    {
        Switch& other = *switchOf(port.peer->domain);
        Port& end = *other.port(port.peer->port);
        end.peerSends = sends(owner, port);
        end.peerJoins = joinsSwitches(port.facts.type);
        runMeter(other, end);
        mergeZoning(owner, port, now);
    }
}

void FabricModel::portStateChanged(Port& port, std::uint64_t now)
{
    const std::string_view state = operState(*_local, port);
    if (std::exchange(port.loggedState, state) != state)
    {
        const std::string event = nameOf(port) + " " + std::string(state);
        _logs.write(LogKind::user, "port", event, now);
        if (state == "Downed")
            _logs.write(LogKind::alarm, "port", event, now);
    }
    if (_logs.started())
        logInsChanged(port, now);
}

void FabricModel::logInsChanged(Port& port, std::uint64_t now)
{
    const bool online = isOnline(*_local, port);
    const std::vector<std::uint32_t> before =
        std::exchange(port.loggedIn, online ? port.attached : std::vector<std::uint32_t>());
    const auto tellThoseWithout = [&](const auto& these, const auto& others, const char* event)
    {
        std::vector<std::uint32_t> told;
        std::set_difference(
            these.begin(), these.end(), others.begin(), others.end(), std::back_inserter(told));
        for (const std::uint32_t address : told)
        {
            const std::string node = ": node " + hexOf(address, 6);
            _logs.write(LogKind::user, "login", nameOf(port) + node + event, now);
        }
    };
    if (online) // else it goes without saying
        tellThoseWithout(before, port.loggedIn, " logged out");
    tellThoseWithout(port.loggedIn, before, " logged in");
}

void FabricModel::configurationWritten(std::string_view what, std::uint64_t now)
{
    _logs.write(LogKind::user, "config", "written: " + std::string(what), now);
}

void FabricModel::allLinksChanged(Switch& owner, std::uint64_t now)
{
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

    _logs.write(LogKind::user, "config", "restored from an image", now);
    _logs.enable(facts.logEnabled);
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
        if (one.second.facts.local)
        {
            SwitchScenario& facts = scenario.switches.back();
            facts.logEnabled = _logs.enabled();
            facts.userLog = _logs[LogKind::user].texts();
            facts.alarmLog = _logs[LogKind::alarm].texts();
        }
        for (const Port& port : one.second.ports)
            scenario.switches.back().ports.push_back(port.facts);
        for (const auto& node : one.second.nodes)
            scenario.nodes.push_back(node.second);
    }
    scenario.zoning = zoningScenarioOf(_zoning.configured, local().activeZoneSet.get(), _zoning.defaultZone);
    return scenario;
}

} // namespace simulator
