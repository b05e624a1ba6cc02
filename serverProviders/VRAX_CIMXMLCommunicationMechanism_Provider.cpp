// How clients reach the object manager: CIM-XML.
#include "serverProviders/VRAX_CIMXMLCommunicationMechanism_Provider.h"

#include "common/local_system.h"

namespace cimple
{

void VRAX_CIMXMLCommunicationMechanism_Provider::fill(VRAX_CIMXMLCommunicationMechanism& instance,
                                                      const char* localWwn)
{
    setLocalSystem(instance, localWwn);
    instance.Name.set("CIMXML Communications Mechanism");
    instance.ElementName.set("CIMXML Communications Mechanism");
    instance.OperationalStatus.set(Array_uint16::make(2)); // OK
    instance.CommunicationMechanism.set(2);                // CIM-XML
    // Basic read and write, instance manipulation, association traversal, indications.
    instance.FunctionalProfilesSupported.set(Array_uint16::make(2, 3, 5, 6, 9));
    instance.MultipleOperationsSupported.set(false);
    instance.AuthenticationMechanismsSupported.set(Array_uint16::make(3)); // Basic
    instance.Version.set("1.1");
    instance.CIMValidated.set(false);
}

} // namespace cimple
