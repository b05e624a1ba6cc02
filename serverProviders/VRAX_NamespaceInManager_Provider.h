// The object manager has the interop namespace.
#ifndef SERVERPROVIDERS_VRAX_NAMESPACEINMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_NAMESPACEINMANAGER_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_Namespace_Provider.h"
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "VRAX_NamespaceInManager_Methods.h"

namespace cimple
{

class VRAX_NamespaceInManager_Provider
    : public Association_Provider<&VRAX_NamespaceInManager::Antecedent, &VRAX_NamespaceInManager::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_ObjectManager>().withFirst<VRAX_Namespace>(); }
};

} // namespace cimple

#endif
