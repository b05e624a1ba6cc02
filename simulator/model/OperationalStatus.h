// What events say of states: values of CIM_ManagedSystemElement.OperationalStatus.
#ifndef SIMULATOR_MODEL_OPERATIONALSTATUS_H
#define SIMULATOR_MODEL_OPERATIONALSTATUS_H

#include <cstdint>
#include <string_view>
#include <vector>

namespace simulator
{

using OperationalStatus = std::vector<std::uint16_t>;

// Of a port or blade by its state, as "Online". Other switches do not say why a port of theirs is down: it
// counts as stopped, while that of the local switch is in error.
OperationalStatus statusOfPort(std::string_view state, bool local);
OperationalStatus statusOfBlade(std::string_view state);

// Of a switch: its state, what the fault codes make of that, then the codes, which are vendor values of
// their own.
OperationalStatus statusOfSwitch(std::string_view state, const std::vector<std::uint16_t>& faults);

} // namespace simulator

#endif
