// What is told of the fabric: its switches, their ports and nodes, and how they hang together.
#include "simulator/model/FabricModel.h"

#include <algorithm>
#include <set>
#include <utility>

namespace simulator
{
namespace
{

// True when some of those that were one part in `before` are several in `after`. What only one of the two
// knows does not count.
bool parted(const std::map<int, int>& before, const std::map<int, int>& after)
{
    std::map<int, std::set<int>> pieces;
    for (const auto& [domain, part] : before)
    {
        const auto found = after.find(domain);
        if (found != after.end() && pieces[part].insert(found->second).second && pieces[part].size() > 1)
            return true;
    }
    return false;
}

} // namespace

void FabricModel::portChanged(Switch& owner, Port& port, std::uint64_t now)
{
    const bool local = owner.facts.local;
    const std::string_view state = operState(owner, port);
    const std::string_view before = std::exchange(port.toldState, state);
    const std::size_t nodes = state == "Online" ? port.attached.size() : 0;
    const std::size_t nodesBefore = std::exchange(port.toldNodes, nodes);
    if (!_history.started() || (state == before && nodes == nodesBefore))
        return;
    SwitchEvent changed = fabricEvent(XPL_EVENT_PORT_STATUS);
    changed.switchWwn = owner.facts.wwn;
    changed.portWwn = simulator::fabricWwn(owner, port);
    changed.status = statusOfPort(state, local);
    changed.previousStatus = statusOfPort(before, local);
    if (local && state != before)
    {
        const std::string message = "port " + std::to_string(port.facts.number) + " " + std::string(state);
        _history.log("port", message, now, state == "Downed" ? Gravity::failure : Gravity::notice);
    }
    SwitchEvent node = event(nodes > nodesBefore ? XPL_EVENT_NODE_LOGGED_IN : XPL_EVENT_NODE_LOGGED_OUT);
    node.switchWwn = changed.switchWwn;
    node.portWwn = changed.portWwn;
    if (changed.status != changed.previousStatus)
        _history.raise(std::move(changed));
    for (std::size_t i = std::min(nodes, nodesBefore); i < std::max(nodes, nodesBefore); ++i)
        _history.raise(node);
}

void FabricModel::switchStatusChanged(Switch& one, std::uint64_t now)
{
    const std::string_view state = toText(one.facts.adminState);
    const OperationalStatus status = statusOfSwitch(state, one.facts.faults);
    const OperationalStatus before = std::exchange(one.toldStatus, status);
    if (!_history.started() || status == before)
        return;
    const bool faulty = !one.facts.faults.empty();
    const std::string name = one.facts.local ? "switch" : "switch " + std::to_string(one.facts.domain);
    _history.log(one.facts.local ? "switch" : "fabric",
                 name + " " + std::string(state) + (faulty ? " with faults" : ""),
                 now,
                 faulty ? Gravity::failure : Gravity::notice);
    SwitchEvent changed = fabricEvent(XPL_EVENT_SWITCH_STATUS);
    changed.switchWwn = one.facts.wwn;
    changed.status = status;
    changed.previousStatus = before;
    _history.raise(std::move(changed));
}

std::map<int, int> FabricModel::parts() const
{
    std::map<int, int> part;
    for (const auto& one : _switches)
        part[one.first] = one.first;
    for (const IslScenario& link : _isls)
    {
        const int low = std::min(part[link.domain], part[link.toDomain]);
        const int high = std::max(part[link.domain], part[link.toDomain]);
        if (low != high && switchOf(link.domain)->port(link.port)->joined)
            for (auto& [domain, number] : part)
                number = number == high ? low : number;
    }
    return part;
}

void FabricModel::switchesJoinOrPart(std::uint64_t now)
{
    const std::map<int, int> after = parts();
    const std::map<int, int> before = std::exchange(_parts, after);
    const auto tell = [this, now](const char* what)
    {
        _history.log("fabric", what, now);
        SwitchEvent topology = fabricEvent(XPL_EVENT_FABRIC_TOPOLOGY);
        topology.subject = what;
        _history.raise(std::move(topology));
    };
    if (parted(before, after))
        tell("segmented");
    if (parted(after, before))
        tell("merged");
}

void FabricModel::setPrincipal(int domain, std::uint64_t now)
{
    const std::string before = fabricWwn();
    _principal = domain;
    principalChanged(before, now);
}

void FabricModel::principalChanged(const std::string& fabricBefore, std::uint64_t now)
{
    const std::string after = fabricWwn();
    if (after == fabricBefore)
        return;
    _history.log("fabric", after.empty() ? "no principal switch" : "principal switch " + after, now);
    if (!fabricBefore.empty() && !after.empty())
    {
        _history.raise(fabricEvent(XPL_EVENT_PRINCIPAL_CHANGED));
        return;
    }
    SwitchEvent changed = event(after.empty() ? XPL_EVENT_FABRIC_REMOVED : XPL_EVENT_FABRIC_ADDED);
    changed.fabricWwn = after.empty() ? fabricBefore : after;
    _history.raise(std::move(changed));
}

void FabricModel::switchCame(const Switch& one, std::uint64_t now)
{
    _parts = parts(); // it is a part of its own, which is no segmentation
    if (!_history.started())
        return;
    _history.log("fabric", "switch " + std::to_string(one.facts.domain) + " added", now);
    SwitchEvent came = fabricEvent(XPL_EVENT_SWITCH_ADDED);
    came.switchWwn = one.facts.wwn;
    _history.raise(std::move(came));
    for (const Port& port : one.ports)
    {
        SwitchEvent created = event(XPL_EVENT_PORT_CREATED);
        created.switchWwn = one.facts.wwn;
        created.portWwn = port.facts.wwn;
        _history.raise(std::move(created));
    }
}

void FabricModel::switchGoes(const Switch& one, std::uint64_t now)
{
    for (const Port& port : one.ports)
    {
        SwitchEvent gone = event(XPL_EVENT_NODE_LOGGED_OUT);
        gone.switchWwn = one.facts.wwn;
        gone.portWwn = port.facts.wwn;
        for (std::size_t i = 0; i < port.toldNodes; ++i)
            _history.raise(gone);
        gone.type = XPL_EVENT_PORT_DELETED;
        _history.raise(std::move(gone));
    }
    _history.log("fabric", "switch " + std::to_string(one.facts.domain) + " removed", now);
    SwitchEvent gone = fabricEvent(XPL_EVENT_SWITCH_REMOVED);
    gone.switchWwn = one.facts.wwn;
    _history.raise(std::move(gone));
}

} // namespace simulator
