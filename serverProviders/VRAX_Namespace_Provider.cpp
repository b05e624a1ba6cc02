// The interop namespace.
#include "serverProviders/VRAX_Namespace_Provider.h"

#include "common/local_switch.h"

namespace cimple
{

void VRAX_Namespace_Provider::build(Map_Writer<VRAX_Namespace>& map)
{
    const Local_Switch_Wwn wwn(kSource);
    Owned<VRAX_Namespace> instance = makeWithDefaults<VRAX_Namespace>();
    if (!instance)
        throw Load_Failed();

    instance->SystemCreationClassName.set("VRAX_FCSwitch");
    instance->SystemName.set(wwn.text());
    instance->ObjectManagerCreationClassName.set("VRAX_ObjectManager");
    instance->ObjectManagerName.set(wwn.text());
    instance->CreationClassName.set("VRAX_Namespace");
    instance->Name.set("root/interop");
    instance->Caption.set("VRAX_Namespace class instance");
    instance->Description.set("VRAX_Namespace class instance");
    instance->ElementName.set("VRAX_Namespace");
    instance->ClassInfo.set(11); // CIM 2.8, the newest version that this deprecated property knows
    instance->ClassType.set(2);  // CIM
    instance->ClassTypeVersion.set("2.15.0");
    insertChecked(map, instance);
}

} // namespace cimple
