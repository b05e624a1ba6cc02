// The enumerations of the model and the texts by which scenarios and attribute keys know their values.
#ifndef SIMULATOR_MODEL_NAMES_H
#define SIMULATOR_MODEL_NAMES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulator
{

enum class AdminState : std::uint8_t
{
    online,
    offline,
    diagnostics
};

// In rising order, so that the lower of two speeds is the smaller value.
enum class LinkSpeed : std::uint8_t
{
    automatic,
    gb1,
    gb2,
    gb4,
    gb8,
    gb10,
    gb20
};

enum class PortType : std::uint8_t
{
    g,
    gl,
    e,
    f,
    fl,
    donor,
    th,
    tf,
    tr,
    pt
};

enum class LinkState : std::uint8_t
{
    automatic, // up when a node or another switch is connected
    up,
    down
};

enum class PortHardware : std::uint8_t
{
    fibreChannel,
    ethernet
};

enum class DiagStatus : std::uint8_t
{
    passed,
    failed,
    unavailable
};

enum class PartState : std::uint8_t
{
    normal,
    warning,
    failed,
    notInstalled
};

enum class SensorState : std::uint8_t
{
    normal,
    warning,
    critical,
    unknown // the sensor cannot be read
};

// Whether a port passes on state change notifications to the node behind it.
enum class RscnEnable : std::uint8_t
{
    yes,
    no,
    automatic
};

enum class NodeRole : std::uint8_t
{
    initiator,
    target
};

enum class NodePortType : std::uint8_t
{
    n,
    nl
};

// How a zone is enforced; see xpl_fzsZoneType.
enum class ZoneType : std::uint8_t
{
    soft = 1,
    hardVirtualFabric,
    hardAcl
};

template <class E>
struct Named
{
    E value;
    std::string_view text;
};

constexpr Named<AdminState> kAdminStates[] = {{AdminState::online, "Online"},
                                              {AdminState::offline, "Offline"},
                                              {AdminState::diagnostics, "Diagnostics"}};
constexpr Named<LinkSpeed> kLinkSpeeds[] = {{LinkSpeed::automatic, "Auto"},
                                            {LinkSpeed::gb1, "1Gb/s"},
                                            {LinkSpeed::gb2, "2Gb/s"},
                                            {LinkSpeed::gb4, "4Gb/s"},
                                            {LinkSpeed::gb8, "8Gb/s"},
                                            {LinkSpeed::gb10, "10Gb/s"},
                                            {LinkSpeed::gb20, "20Gb/s"}};
constexpr Named<PortType> kPortTypes[] = {{PortType::g, "G"},
                                          {PortType::gl, "GL"},
                                          {PortType::e, "E"},
                                          {PortType::f, "F"},
                                          {PortType::fl, "FL"},
                                          {PortType::donor, "Donor"},
                                          {PortType::th, "TH"},
                                          {PortType::tf, "TF"},
                                          {PortType::tr, "TR"},
                                          {PortType::pt, "PT"}};
constexpr Named<LinkState> kLinkStates[] = {
    {LinkState::automatic, "Auto"}, {LinkState::up, "Up"}, {LinkState::down, "Down"}};
constexpr Named<PortHardware> kPortHardware[] = {{PortHardware::fibreChannel, "FC"},
                                                 {PortHardware::ethernet, "Ethernet"}};
constexpr Named<DiagStatus> kDiagStatuses[] = {
    {DiagStatus::passed, "Passed"}, {DiagStatus::failed, "Failed"}, {DiagStatus::unavailable, "Unavailable"}};
constexpr Named<PartState> kPartStates[] = {{PartState::normal, "Normal"},
                                            {PartState::warning, "Warning"},
                                            {PartState::failed, "Failed"},
                                            {PartState::notInstalled, "NotInstalled"}};
constexpr Named<SensorState> kSensorStates[] = {{SensorState::normal, "Normal"},
                                                {SensorState::warning, "Warning"},
                                                {SensorState::critical, "Critical"},
                                                {SensorState::unknown, "Unknown"}};
constexpr Named<RscnEnable> kRscnEnables[] = {
    {RscnEnable::yes, "True"}, {RscnEnable::no, "False"}, {RscnEnable::automatic, "Auto"}};
constexpr Named<NodeRole> kNodeRoles[] = {{NodeRole::initiator, "Initiator"}, {NodeRole::target, "Target"}};
constexpr Named<NodePortType> kNodePortTypes[] = {{NodePortType::n, "N"}, {NodePortType::nl, "NL"}};
constexpr Named<ZoneType> kZoneTypes[] = {{ZoneType::soft, "Soft"},
                                          {ZoneType::hardVirtualFabric, "HardVirtualFabric"},
                                          {ZoneType::hardAcl, "HardACL"}};

constexpr const auto& namesOf(AdminState)
{
    return kAdminStates;
}
constexpr const auto& namesOf(LinkSpeed)
{
    return kLinkSpeeds;
}
constexpr const auto& namesOf(PortType)
{
    return kPortTypes;
}
constexpr const auto& namesOf(LinkState)
{
    return kLinkStates;
}
constexpr const auto& namesOf(PortHardware)
{
    return kPortHardware;
}
constexpr const auto& namesOf(DiagStatus)
{
    return kDiagStatuses;
}
constexpr const auto& namesOf(PartState)
{
    return kPartStates;
}
constexpr const auto& namesOf(SensorState)
{
    return kSensorStates;
}
constexpr const auto& namesOf(RscnEnable)
{
    return kRscnEnables;
}
constexpr const auto& namesOf(NodeRole)
{
    return kNodeRoles;
}
constexpr const auto& namesOf(NodePortType)
{
    return kNodePortTypes;
}
constexpr const auto& namesOf(ZoneType)
{
    return kZoneTypes;
}

template <class E>
constexpr std::string_view toText(E value)
{
    for (const auto& name : namesOf(E{}))
        if (name.value == value)
            return name.text;
    return {};
}

// Exact comparison: "online" is not "Online".
template <class E>
constexpr std::optional<E> fromText(std::string_view text)
{
    for (const auto& name : namesOf(E{}))
        if (name.text == text)
            return name.value;
    return std::nullopt;
}

// "Auto, 1Gb/s, 2Gb/s, ..." for messages.
template <class E>
std::string choicesOf()
{
    std::string list;
    for (const auto& name : namesOf(E{}))
    {
        list += list.empty() ? "" : ", ";
        list += name.text;
    }
    return list;
}

} // namespace simulator

#endif
