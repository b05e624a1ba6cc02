// The object manager is reached by CIM-XML.
#include "serverProviders/VRAX_CIMXMLCommMechanismForManager_Provider.h"

namespace cimple
{

void VRAX_CIMXMLCommMechanismForManager_Provider::build(Map_Writer<VRAX_CIMXMLCommMechanismForManager>& map)
{
    joinFirst<VRAX_ObjectManager, VRAX_CIMXMLCommunicationMechanism>(map);
}

} // namespace cimple
