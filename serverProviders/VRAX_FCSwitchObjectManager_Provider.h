// The switch hosts the object manager.
#ifndef SERVERPROVIDERS_VRAX_FCSWITCHOBJECTMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_FCSWITCHOBJECTMANAGER_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "VRAX_FCSwitchObjectManager_Methods.h"

namespace cimple
{

class VRAX_FCSwitchObjectManager_Provider
    : public Association_Provider_Base<VRAX_FCSwitchObjectManager_Provider,
                                       VRAX_FCSwitchObjectManager,
                                       VRAX_FCSwitch_Provider,
                                       VRAX_ObjectManager_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_FCSwitchObjectManager_Provider";
    static constexpr auto kFirstRole = &VRAX_FCSwitchObjectManager::Antecedent;
    static constexpr auto kSecondRole = &VRAX_FCSwitchObjectManager::Dependent;

    void build(Map_Writer<VRAX_FCSwitchObjectManager>& map);
};

} // namespace cimple

#endif
