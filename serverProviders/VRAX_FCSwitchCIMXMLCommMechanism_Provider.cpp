// The switch hosts the way to reach its object manager.
#include "serverProviders/VRAX_FCSwitchCIMXMLCommMechanism_Provider.h"

namespace cimple
{

void VRAX_FCSwitchCIMXMLCommMechanism_Provider::build(Map_Writer<VRAX_FCSwitchCIMXMLCommMechanism>& map)
{
    joinFirst<VRAX_FCSwitch, VRAX_CIMXMLCommunicationMechanism>(map);
}

} // namespace cimple
