// The edit of the switch's configuration, within the administrative mode.
#include "platform/xpl_types.h"
#include "simulator/model/FabricModel.h"

#include <algorithm>

namespace simulator
{

bool FabricModel::beginConfigEdit()
{
    if (_configEdit)
        return false;
    _configEdit.emplace();
    return true;
}

bool FabricModel::fitsTfPorts(int port, const TfPorts& ports) const
{
    const Port* owner = local().port(port);
    const auto typeOf = [this](int number)
    {
        const Port* found = local().port(number);
        return found != nullptr ? std::optional<PortType>(found->facts.type) : std::nullopt;
    };
    return owner != nullptr && faultOf(ports, owner->facts.type, typeOf).empty();
}

bool FabricModel::mayHaveType(const PortScenario& port, PortType type) const
{
    const bool hasList = !port.primaryTfPorts.empty() || !port.backupTfPorts.empty();
    const auto names = [&port](const TfPorts& list)
    { return std::find(list.begin(), list.end(), port.number) != list.end(); };
    const bool isListed =
        std::any_of(local().ports.begin(),
                    local().ports.end(),
                    [&names](const Port& other)
                    { return names(other.facts.primaryTfPorts) || names(other.facts.backupTfPorts); });
    return (!hasList || type == PortType::th) && (!isListed || type == PortType::tf);
}

std::int32_t FabricModel::activateConfigEdit(std::uint64_t now)
{
    if (!_configEdit || !_configEdit->saved())
        return XPL_INVALID_PARAMETER;
    // Types of ports may have changed since.
    for (const ConfigEdit::Write& write : *_configEdit->saved())
        if (!fitsTfPorts(write.port, write.ports))
            return XPL_INVALID_PARAMETER;
    for (const ConfigEdit::Write& write : *_configEdit->saved())
        local().port(write.port)->facts.*write.list = write.ports;
    _configEdit.reset();
    _history.log("config", "activated", now);
    return XPL_OK;
}

} // namespace simulator
