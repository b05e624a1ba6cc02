// The keys by which a local port and what describes it belong together.
#ifndef COMMON_LOCAL_PORT_KEY_H
#define COMMON_LOCAL_PORT_KEY_H

#include "common/Association_Provider.h"

#include "VRAX_FCPort.h"

#include <cstring>

namespace cimple
{

// A switch port's is that of its switch, a colon, and its own WWN.
inline const char* deviceId(const VRAX_FCPort& port)
{
    return port.DeviceID.value.c_str();
}

// The DeviceID of the port that an instance of a Local_Port_Provider is of.
template <class PROVIDER>
const char* localPortOf(const typename PROVIDER::Class& one)
{
    return one.InstanceID.value.c_str() + std::strlen(PROVIDER::kIdPrefix);
}

} // namespace cimple

#endif
