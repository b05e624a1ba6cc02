// What differs between the kinds of hardware that a local port may have.
#ifndef SWITCHACCESS_PORT_HARDWARE_H
#define SWITCHACCESS_PORT_HARDWARE_H

#include "platform/data_cache.h"

namespace cimple
{

// The last part of the key that tells the fastest speed of a local port.
inline const char* speedCapabilityKey(const DataCache& cache, const std::string& portIndex)
{
    return cache.getPortHWType(portIndex) == kPortHWTypeEthernet ? "EthSpeedCapability" : "SpeedCapability";
}

} // namespace cimple

#endif
