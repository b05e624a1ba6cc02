// The object manager is reached by CIM-XML.
#ifndef SERVERPROVIDERS_VRAX_CIMXMLCOMMMECHANISMFORMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_CIMXMLCOMMMECHANISMFORMANAGER_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_CIMXMLCommunicationMechanism_Provider.h"
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "VRAX_CIMXMLCommMechanismForManager_Methods.h"

namespace cimple
{

class VRAX_CIMXMLCommMechanismForManager_Provider
    : public Association_Provider_Base<VRAX_CIMXMLCommMechanismForManager_Provider,
                                       VRAX_CIMXMLCommMechanismForManager,
                                       VRAX_ObjectManager_Provider,
                                       VRAX_CIMXMLCommunicationMechanism_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_CIMXMLCommMechanismForManager_Provider";
    static constexpr auto kFirstRole = &VRAX_CIMXMLCommMechanismForManager::Antecedent;
    static constexpr auto kSecondRole = &VRAX_CIMXMLCommMechanismForManager::Dependent;

    void build(Map_Writer<VRAX_CIMXMLCommMechanismForManager>& map);
};

} // namespace cimple

#endif
