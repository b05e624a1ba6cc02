// The interop namespace.
#include "serverProviders/VRAX_Namespace_Provider.h"

namespace cimple
{

void VRAX_Namespace_Provider::fill(VRAX_Namespace& instance, const char* localWwn)
{
    instance.SystemCreationClassName.set("VRAX_FCSwitch");
    instance.SystemName.set(localWwn);
    instance.ObjectManagerCreationClassName.set("VRAX_ObjectManager");
    instance.ObjectManagerName.set(localWwn);
    instance.CreationClassName.set("VRAX_Namespace");
    instance.Name.set("root/interop");
    instance.Caption.set("VRAX_Namespace class instance");
    instance.Description.set("VRAX_Namespace class instance");
    instance.ElementName.set("VRAX_Namespace");
    instance.ClassInfo.set(11); // CIM 2.8, the newest version that this deprecated property knows
    instance.ClassType.set(2);  // CIM
    instance.ClassTypeVersion.set("2.15.0");
}

} // namespace cimple
