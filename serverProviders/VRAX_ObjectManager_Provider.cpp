// The object manager: the agent itself.
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "common/local_switch.h"

namespace cimple
{

void VRAX_ObjectManager_Provider::build(Map_Writer<VRAX_ObjectManager>& map)
{
    const Local_Switch_Wwn wwn(kSource);
    // Without the schema's defaults: they speak of states that the agent does not have.
    Owned<VRAX_ObjectManager> instance = makeNull<VRAX_ObjectManager>();
    if (!instance)
    {
        logFailure("load", "Unable to create VRAX_ObjectManager");
        throw Load_Failed();
    }

    instance->SystemCreationClassName.set("VRAX_FCSwitch");
    instance->SystemName.set(wwn.text());
    instance->CreationClassName.set("VRAX_ObjectManager");
    instance->Name.set(wwn.text());
    instance->Caption.set("VRAX_ObjectManager instance");
    instance->Description.set("Embedded CIMAgent");
    instance->ElementName.set("Tarvel CIMAgent");
    instance->OperationalStatus.set(Array_uint16::make(2)); // OK
    instance->StatusDescriptions.set(Array_String::make("OK"));
    instance->Started.set(true);
    insertChecked(map, instance);
}

} // namespace cimple
