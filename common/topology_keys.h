// The keys by which switches, ports, endpoints and nodes belong together.
//
// The platform names the fabric by three different texts, so elements of the fabric are told from those of a
// switch by the class of their system and never by its name. World Wide Names are compared without regard to
// letter case: each class publishes them as its own source gives them. A port is found by its switch and its
// own WWN, since two switches may report one port WWN. Texts are the instance's own.
#ifndef COMMON_TOPOLOGY_KEYS_H
#define COMMON_TOPOLOGY_KEYS_H

#include "common/Text_Index.h"

#include "VRAX_FCNode.h"
#include "VRAX_FCPort.h"
#include "VRAX_FCSwitch.h"
#include "VRAX_ProtocolEndpoint.h"

#include <cstring>

namespace cimple
{

// In place of a switch's WWN for all that belongs to the fabric: attached node ports and their endpoints.
constexpr const char* kFabricSystem = "";

// What a switch reports for a port that has no name of its own (yet).
constexpr const char* kZeroWwn = "0000000000000000";
inline bool isNoWwn(const char* wwn)
{
    return *wwn == '\0' || std::strcmp(wwn, kZeroWwn) == 0;
}

// ELEMENT is a port or an endpoint. True for those of attached nodes.
template <class ELEMENT>
bool belongsToFabric(const ELEMENT& element)
{
    return element.SystemCreationClassName.value == "VRAX_Fabric";
}

// Only the local switch knows of a port how healthy it is. The numbers of other ports mean nothing to it: its
// own port of that number is another one.
inline bool isLocal(const VRAX_FCPort& port)
{
    return !port.HealthState.null;
}

// The WWN of the switch that the element belongs to; null for those of attached nodes.
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

inline Two_Texts portSystemAndWwn(const VRAX_FCPort& port)
{
    return {belongsToFabric(port) ? kFabricSystem : port.SystemName.value.c_str(), portWwn(port)};
}

inline Two_Texts endpointSystemAndWwn(const VRAX_ProtocolEndpoint& endpoint)
{
    return {belongsToFabric(endpoint) ? kFabricSystem : endpoint.SystemName.value.c_str(),
            endpoint.Name.value.c_str()};
}

// The WWN of an attached node's port; null for other ports.
inline const char* attachedPortWwn(const VRAX_FCPort& port)
{
    return belongsToFabric(port) ? port.DeviceID.value.c_str() : nullptr;
}

inline const char* nodePortWwn(const VRAX_FCNode& node)
{
    return node.InstanceID.value.c_str();
}

} // namespace cimple

#endif
