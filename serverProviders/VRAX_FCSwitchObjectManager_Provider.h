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
    : public Association_Provider<&VRAX_FCSwitchObjectManager::Antecedent,
                                  &VRAX_FCSwitchObjectManager::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_FCSwitch>().withFirst<VRAX_ObjectManager>(); }
};

} // namespace cimple

#endif
