// What the indications of elements that come, go and change have in common.
#include "indicationProviders/lifecycle.h"

#include "support/VRAX_Maps.h"
#include "switchaccess/Attribute.h"

namespace cimple
{

namespace
{

constexpr const char* kSwitchClass = "VRAX_FCSwitch";

// WWNs of switch and port.
std::string deviceOf(const Switch_Event& event)
{
    return event.switchWwn.toString() + ":" + event.portWwn.toString();
}

} // namespace

void setKeys(VRAX_FCPort& port, const Switch_Event& event)
{
    port.SystemCreationClassName.set(kSwitchClass);
    port.SystemName.set(event.switchWwn.c_str());
    port.CreationClassName.set("VRAX_FCPort");
    port.DeviceID.set(deviceOf(event).c_str());
}

// Clients tell switches apart by this class name with the WWN in it.
void setKeys(CIM_ComputerSystem& system, const Switch_Event& event)
{
    const String name = inUpperCase(event.switchWwn.c_str());
    String className(kSwitchClass);
    className.append(':');
    className.append(name);
    system.CreationClassName.set(className);
    system.Name.set(name);
}

template <>
String identifierOf<VRAX_FCPort>(const Switch_Event& event)
{
    return VRAX_Maps::formatInstanceID(deviceOf(event).c_str());
}

template <>
String identifierOf<CIM_ComputerSystem>(const Switch_Event& event)
{
    return VRAX_Maps::formatInstanceID(event.switchWwn.c_str());
}

} // namespace cimple
