// Operational keys of the local switch's ports.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hardware.h"

namespace simulator
{
namespace
{

std::string_view tuningMode(const PortScenario& facts)
{
    if (facts.autoPerfTuning)
        return "Normal";
    if (facts.mfs)
        return "MFS";
    if (facts.lcf)
        return facts.vi ? "LCF-VI" : "LCF";
    return facts.vi ? "VI" : "Normal";
}

// The guard holds back state change notifications; left to itself the port guards initiators, which would
// interrupt their input and output on each.
bool guardsStream(const Port& port)
{
    return port.facts.rscn == RscnEnable::no || (port.facts.rscn == RscnEnable::automatic && port.initiators);
}

// The two kinds of hardware report their capability under different keys.
ReadHandler capabilityOf(PortHardware hardware)
{
    return ofLocalPort(
        [hardware](const Switch&, const Port& port, std::uint64_t, Answer& answer)
        {
            return port.facts.hardware == hardware ? answer.text(toText(port.facts.speedCapability))
                                                   : std::int32_t{XPL_NOT_AVAILABLE};
        });
}

} // namespace

void addPortKeys(ReadKeys& keys)
{
    const auto add = [&keys](const char* name, auto read)
    { keys.add(std::string("Oper.UserPort.0.%s.") + name, ofLocalPort(read)); };
    add("SymPortName",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a) { return a.text(port.facts.name); });
    add("OperState",
        [](const Switch& owner, const Port& port, std::uint64_t, Answer& a)
        { return a.text(operState(owner, port)); });
    add("AdminState",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a)
        { return a.text(toText(port.facts.adminState)); });
    add("WWN",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a) { return a.text(port.facts.wwn); });
    add("RunningType",
        [](const Switch& owner, const Port& port, std::uint64_t, Answer& a)
        { return a.text(runningType(owner, port)); });
    add("LinkSpeed",
        [](const Switch& owner, const Port& port, std::uint64_t, Answer& a)
        {
            const LinkSpeed speed = linkSpeed(owner, port);
            return a.text(speed == LinkSpeed::automatic ? "Unknown" : toText(speed));
        });
    add("IOStreamGuardMode",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a)
        { return a.text(guardsStream(port) ? "Enabled" : "Disabled"); });
    add("PerfTuningMode",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a)
        { return a.text(tuningMode(port.facts)); });
    add("MaxCredit",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a)
        { return a.decimal(static_cast<std::uint64_t>(port.facts.maxCredit)); });
    add("DiagStatus",
        [](const Switch&, const Port& port, std::uint64_t, Answer& a)
        {
            return port.facts.diagnostics == DiagStatus::unavailable ? std::int32_t{XPL_NOT_AVAILABLE}
                                                                     : a.text(toText(port.facts.diagnostics));
        });
    add("IOBlade",
        [](const Switch& owner, const Port& port, std::uint64_t, Answer& a)
        {
            return bladeOf(owner, port) == nullptr ? std::int32_t{XPL_NOT_AVAILABLE}
                                                   : a.decimal(static_cast<std::uint64_t>(port.facts.blade));
        });
    keys.add("Oper.UserPort.0.%s.SpeedCapability", capabilityOf(PortHardware::fibreChannel));
    keys.add("Oper.UserPort.0.%s.EthSpeedCapability", capabilityOf(PortHardware::ethernet));
}

} // namespace simulator
