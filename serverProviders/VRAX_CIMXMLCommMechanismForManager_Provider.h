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
    : public Association_Provider<&VRAX_CIMXMLCommMechanismForManager::Antecedent,
                                  &VRAX_CIMXMLCommMechanismForManager::Dependent>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.first<VRAX_ObjectManager>().withFirst<VRAX_CIMXMLCommunicationMechanism>();
    }
};

} // namespace cimple

#endif
