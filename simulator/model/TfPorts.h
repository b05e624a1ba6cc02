// The lists by which a transparent switch forwards its host ports (type TH) to fabric ports (type TF).
#ifndef SIMULATOR_MODEL_TFPORTS_H
#define SIMULATOR_MODEL_TFPORTS_H

#include "simulator/scenario/Scenario.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace simulator
{

using TfPorts = std::vector<std::uint16_t>;
// One of the two lists of a port.
using TfList = TfPorts PortScenario::*;
constexpr TfList kTfLists[] = {&PortScenario::primaryTfPorts, &PortScenario::backupTfPorts};

// "3,7,12", or "None" for no port.
std::string textOf(const TfPorts& ports);
// The reverse; nothing for any other text: one with blanks, signs or zeros in front, for example.
std::optional<TfPorts> tfPortsOf(std::string_view text);

// The type of the switch's port with that number; nothing when there is no such port.
using TypeOfPort = std::function<std::optional<PortType>(int number)>;

// Why a port of this type cannot have the list; empty when it can.
std::string faultOf(const TfPorts& ports, PortType owner, const TypeOfPort& typeOf);

} // namespace simulator

#endif
