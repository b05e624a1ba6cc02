// The object manager: the agent itself.
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "common/local_system.h"

namespace cimple
{

void VRAX_ObjectManager_Provider::fill(VRAX_ObjectManager& instance, const char* localWwn)
{
    setLocalSystem(instance, localWwn);
    instance.Name.set(localWwn);
    instance.Caption.set("VRAX_ObjectManager instance");
    instance.Description.set("Embedded CIMAgent");
    instance.ElementName.set("Tarvel CIMAgent");
    instance.OperationalStatus.set(Array_uint16::make(2)); // OK
    instance.StatusDescriptions.set(Array_String::make("OK"));
    instance.Started.set(true);
}

} // namespace cimple
