// The keys by which switches, ports, endpoints and nodes belong together.
//
// The platform names the fabric by three different texts, so elements of the fabric are told from those of a
// switch by the class of their system and never by its name. World Wide Names are compared without regard to
// letter case: each class publishes them as its own source gives them.
#ifndef FABRICPROVIDERS_TOPOLOGY_KEYS_H
#define FABRICPROVIDERS_TOPOLOGY_KEYS_H

#include "VRAX_FCNode.h"
#include "VRAX_FCPort.h"
#include "VRAX_FCSwitch.h"
#include "VRAX_ProtocolEndpoint.h"

#include <cstring>

namespace cimple
{

// ELEMENT is a port or an endpoint. True for those of attached nodes.
template <class ELEMENT>
bool belongsToFabric(const ELEMENT& element)
{
    return element.SystemCreationClassName.value == "VRAX_Fabric";
}

// The WWN of the switch that the element belongs to; null for those of attached nodes. The texts here are the
// instance's own.
template <class ELEMENT>
const char* switchOf(const ELEMENT& element)
{
    return element.SystemCreationClassName.value == "VRAX_FCSwitch" ? element.SystemName.value.c_str()
                                                                    : nullptr;
}

inline const char* switchName(const VRAX_FCSwitch& one)
{
    return one.Name.value.c_str();
}

// The port's own WWN: a switch port's DeviceID has that of its switch and a colon before it.
inline const char* portWwn(const VRAX_FCPort& port)
{
    const char* id = port.DeviceID.value.c_str();
    const char* colon = std::strchr(id, ':');
    return colon != nullptr ? colon + 1 : id;
}

// The same for the ports of attached nodes; null for the others.
inline const char* attachedPortWwn(const VRAX_FCPort& port)
{
    return belongsToFabric(port) ? port.DeviceID.value.c_str() : nullptr;
}

inline const char* endpointWwn(const VRAX_ProtocolEndpoint& endpoint)
{
    return endpoint.Name.value.c_str();
}

inline const char* nodePortWwn(const VRAX_FCNode& node)
{
    return node.InstanceID.value.c_str();
}

} // namespace cimple

#endif
