// The switch hosts the object manager.
#include "serverProviders/VRAX_FCSwitchObjectManager_Provider.h"

namespace cimple
{

void VRAX_FCSwitchObjectManager_Provider::build(Map_Writer<VRAX_FCSwitchObjectManager>& map)
{
    joinFirst<VRAX_FCSwitch, VRAX_ObjectManager>(map);
}

} // namespace cimple
