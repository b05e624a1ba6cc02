// What events say of states: values of CIM_ManagedSystemElement.OperationalStatus.
#include "simulator/model/OperationalStatus.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr std::uint16_t kUnknown = 0;
constexpr std::uint16_t kOk = 2;
constexpr std::uint16_t kPredictiveFailure = 5;
constexpr std::uint16_t kError = 6;
constexpr std::uint16_t kStopped = 10;
constexpr std::uint16_t kInService = 11;

// Fault codes: the power-on self test failed; the management processors do not reach the hardware.
constexpr std::uint16_t kSelfTestFault = 32768;
constexpr std::uint16_t kAccessFault = 32769;

std::uint16_t codeOf(std::string_view state)
{
    if (state == "Online")
        return kOk;
    if (state == "Offline")
        return kStopped;
    if (state == "Diagnostics")
        return kInService;
    return state == "Isolated" || state == "Downed" ? kError : kUnknown;
}

} // namespace

OperationalStatus statusOfPort(std::string_view state, bool local)
{
    return {!local && state == "Downed" ? kStopped : codeOf(state)};
}

OperationalStatus statusOfBlade(std::string_view state)
{
    return {codeOf(state)};
}

OperationalStatus statusOfSwitch(std::string_view state, const std::vector<std::uint16_t>& faults)
{
    const auto has = [&faults](std::uint16_t fault)
    { return std::find(faults.begin(), faults.end(), fault) != faults.end(); };
    const std::uint16_t code = codeOf(state);
    const bool inUse = code != kInService;
    OperationalStatus status = {inUse && !faults.empty() && !has(kSelfTestFault) ? kError : code};
    if (inUse && has(kSelfTestFault) && !has(kAccessFault))
        status.push_back(kPredictiveFailure);
    status.insert(status.end(), faults.begin(), faults.end());
    return status;
}

} // namespace simulator
