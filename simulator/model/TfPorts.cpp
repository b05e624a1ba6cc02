// The lists by which a transparent switch forwards its host ports to fabric ports.
#include "simulator/model/TfPorts.h"

#include "simulator/model/hex.h"

#include <algorithm>
#include <limits>

namespace simulator
{
namespace
{

constexpr std::string_view kNone = "None";

} // namespace

std::string textOf(const TfPorts& ports)
{
    std::string text;
    for (const std::uint16_t port : ports)
        text += (text.empty() ? "" : ",") + std::to_string(port);
    return text.empty() ? std::string(kNone) : text;
}

std::optional<TfPorts> tfPortsOf(std::string_view text)
{
    TfPorts ports;
    for (bool more = text != kNone; more;)
    {
        const std::size_t comma = text.find(',');
        int number = 0;
        if (!parseIndex(text.substr(0, comma), number) || number > std::numeric_limits<std::uint16_t>::max())
            return std::nullopt;
        ports.push_back(static_cast<std::uint16_t>(number));
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : text.size());
    }
    return ports;
}

std::string faultOf(const TfPorts& ports, PortType owner, const TypeOfPort& typeOf)
{
    if (!ports.empty() && owner != PortType::th)
        return "only ports of type TH have a list of TF ports";
    if (textOf(ports).size() > kTfListSize)
        return "the list of TF ports is longer than " + std::to_string(kTfListSize) + " bytes";
    for (auto port = ports.begin(); port != ports.end(); ++port)
    {
        const std::string name = "port " + std::to_string(*port);
        if (std::find(ports.begin(), port, *port) != port)
            return name + " is in the list twice";
        const auto type = typeOf(*port);
        if (!type)
            return name + " is not a port of the switch";
        if (*type != PortType::tf)
            return name + " is not of type TF";
    }
    return "";
}

} // namespace simulator
