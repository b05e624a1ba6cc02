// How clients reach the object manager: CIM-XML.
#include "serverProviders/VRAX_CIMXMLCommunicationMechanism_Provider.h"

#include "common/local_switch.h"

namespace cimple
{

void VRAX_CIMXMLCommunicationMechanism_Provider::build(Map_Writer<VRAX_CIMXMLCommunicationMechanism>& map)
{
    const Local_Switch_Wwn wwn(kSource);
    // The schema's defaults (EnabledState and its companions) are published with it.
    Owned<VRAX_CIMXMLCommunicationMechanism> instance = makeWithDefaults<VRAX_CIMXMLCommunicationMechanism>();
    if (!instance)
    {
        logFailure("load", "Unable to create VRAX_CIMXMLCommunicationMechanism");
        throw Load_Failed();
    }

    instance->SystemCreationClassName.set("VRAX_FCSwitch");
    instance->SystemName.set(wwn.text());
    instance->CreationClassName.set("VRAX_CIMXMLCommunicationMechanism");
    instance->Name.set("CIMXML Communications Mechanism");
    instance->ElementName.set("CIMXML Communications Mechanism");
    instance->OperationalStatus.set(Array_uint16::make(2)); // OK
    instance->CommunicationMechanism.set(2);                // CIM-XML
    // Basic read and write, instance manipulation, association traversal, indications.
    instance->FunctionalProfilesSupported.set(Array_uint16::make(2, 3, 5, 6, 9));
    instance->MultipleOperationsSupported.set(false);
    instance->AuthenticationMechanismsSupported.set(Array_uint16::make(3)); // Basic
    instance->Version.set("1.1");
    instance->CIMValidated.set(false);
    insertChecked(map, instance);
}

} // namespace cimple
