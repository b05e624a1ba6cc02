// What follows from the facts of a port: its state, type, speed and name.
#include "simulator/model/hardware.h"
#include "simulator/model/hex.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr std::size_t kWwnDigits = 16;
constexpr std::size_t kPortDigits = 3;
constexpr std::size_t kLowDigits = 12; // the IEEE part of a WWN

bool hasLink(const Port& port)
{
    if (port.facts.link == LinkState::down)
        return false;
    if (port.peer)
        return port.peerSends;
    if (!port.attached.empty())
        return port.facts.type != PortType::e; // no node logs in to it
    return port.facts.link == LinkState::up;
}

bool isIsolated(const Port& port)
{
    return port.peer && (port.isolated || !port.peerJoins || !joinsSwitches(port.facts.type));
}

// The state of a port that is switched off or broken, by itself or with what it sits on; empty for others.
std::string_view outage(const Switch& owner, const Port& port)
{
    if (owner.facts.adminState != AdminState::online)
        return toText(owner.facts.adminState);
    const BladeScenario* blade = bladeOf(owner, port);
    if (blade != nullptr && !blade->present)
        return toText(AdminState::offline);
    if (blade != nullptr && blade->adminState != AdminState::online)
        return toText(blade->adminState);
    if (port.facts.adminState != AdminState::online)
        return toText(port.facts.adminState);
    return port.facts.failed || (blade != nullptr && blade->failed) ? "Downed" : std::string_view();
}

// The slower of two speeds, where automatic sets no limit.
LinkSpeed slower(LinkSpeed a, LinkSpeed b)
{
    if (a == LinkSpeed::automatic || b == LinkSpeed::automatic)
        return a == LinkSpeed::automatic ? b : a;
    return std::min(a, b);
}

} // namespace

std::string_view operState(const Switch& owner, const Port& port)
{
    const std::string_view out = outage(owner, port);
    if (!out.empty())
        return out;
    if (!hasLink(port))
        return "Offline";
    return isIsolated(port) ? "Isolated" : "Online";
}

bool isOnline(const Switch& owner, const Port& port)
{
    return operState(owner, port) == "Online";
}

bool sends(const Switch& owner, const Port& port)
{
    return outage(owner, port).empty() && port.facts.link != LinkState::down;
}

bool joinsSwitches(PortType type)
{
    return type != PortType::f && type != PortType::fl;
}

std::string_view runningType(const Switch& owner, const Port& port)
{
    const bool negotiated = port.facts.type == PortType::g || port.facts.type == PortType::gl;
    if (!negotiated)
        return toText(port.facts.type);
    if (!isOnline(owner, port))
        return "Unknown";
    if (port.peer)
        return "E";
    if (port.loop && port.facts.type == PortType::gl)
        return "FL";
    return !port.attached.empty() ? "F" : toText(port.facts.type);
}

LinkSpeed linkSpeed(const Switch& owner, const Port& port)
{
    if (!isOnline(owner, port))
        return LinkSpeed::automatic;
    return slower(port.facts.speedCapability, slower(port.facts.speed, port.nodeSpeed));
}

std::string portWwn(std::string_view switchWwn, int number)
{
    if (switchWwn.size() != kWwnDigits)
        return {};
    const auto digits = hexOf(static_cast<std::uint64_t>(number), kPortDigits);
    return "2" + digits + std::string(switchWwn.substr(kWwnDigits - kLowDigits));
}

std::string fabricWwn(const Switch& owner, const Port& port)
{
    return owner.facts.local ? portWwn(owner.facts.wwn, port.facts.number) : port.facts.wwn;
}

std::optional<int> portNumberOf(std::string_view switchWwn, std::string_view wwn)
{
    std::uint64_t number = 0;
    const bool ours = isHex(switchWwn, kWwnDigits) && isHex(wwn, kWwnDigits) && wwn.front() == '2' &&
                      upperCase(wwn.substr(kWwnDigits - kLowDigits)) ==
                          upperCase(switchWwn.substr(kWwnDigits - kLowDigits));
    if (!ours || !parseHex(wwn.substr(1, kPortDigits), number))
        return std::nullopt;
    return static_cast<int>(number);
}

} // namespace simulator
