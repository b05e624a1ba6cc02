// What the switch takes in a configuration: in its records, in writes of single attributes, and in scenarios.
// Whatever a scenario brings can be read from the switch and written back.
#ifndef SIMULATOR_SCENARIO_RECORD_RULES_H
#define SIMULATOR_SCENARIO_RECORD_RULES_H

#include "simulator/model/names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace simulator
{

constexpr int kMinDomainId = 1; // FC-SW-3
constexpr int kMaxDomainId = 239;

// Bytes of a symbolic name, without the terminator.
constexpr std::size_t kSwitchNameSize = 32;
constexpr std::size_t kPortNameSize = 255;
constexpr std::size_t kLocationSize = 128;
constexpr std::size_t kUserNameSize = 64;

// Bytes that belong to other services. Those of the switch record are kept in their order.
constexpr std::size_t kSwitchReservedSize = 69;
constexpr std::size_t kPortReservedSize = 288;

// Codes of the principal priority: highest, default, never principal.
constexpr int kPrincipalPriorities[] = {1, 0xFE, 0xFF};

// A speed that the port's optics cannot run is refused, not clipped.
inline bool canRun(LinkSpeed capability, LinkSpeed speed)
{
    return speed <= capability;
}

inline bool isDomainId(int domain)
{
    return domain >= kMinDomainId && domain <= kMaxDomainId;
}

inline bool isPrincipalPriority(int code)
{
    return std::find(std::begin(kPrincipalPriorities), std::end(kPrincipalPriorities), code) !=
           std::end(kPrincipalPriorities);
}

} // namespace simulator

#endif
