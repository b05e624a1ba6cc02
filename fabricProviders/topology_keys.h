// The keys by which switches, ports, endpoints and nodes belong together.
//
// The platform names the fabric by three different texts, so elements of the fabric are told from those of a
// switch by the class of their system and never by its name. World Wide Names are compared without regard to
// letter case: each class publishes them as its own source gives them.
#ifndef FABRICPROVIDERS_TOPOLOGY_KEYS_H
#define FABRICPROVIDERS_TOPOLOGY_KEYS_H

#include "VRAX_ProtocolEndpoint.h"

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

inline const char* endpointWwn(const VRAX_ProtocolEndpoint& endpoint)
{
    return endpoint.Name.value.c_str();
}

} // namespace cimple

#endif
