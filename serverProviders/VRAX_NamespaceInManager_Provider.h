// The object manager has the interop namespace.
#ifndef SERVERPROVIDERS_VRAX_NAMESPACEINMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_NAMESPACEINMANAGER_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_Namespace_Provider.h"
#include "serverProviders/VRAX_ObjectManager_Provider.h"

#include "VRAX_NamespaceInManager_Methods.h"

namespace cimple
{

class VRAX_NamespaceInManager_Provider : public Association_Provider_Base<VRAX_NamespaceInManager_Provider,
                                                                          VRAX_NamespaceInManager,
                                                                          VRAX_ObjectManager_Provider,
                                                                          VRAX_Namespace_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_NamespaceInManager_Provider";
    static constexpr auto kFirstRole = &VRAX_NamespaceInManager::Antecedent;
    static constexpr auto kSecondRole = &VRAX_NamespaceInManager::Dependent;

    void build(Map_Writer<VRAX_NamespaceInManager>& map);
};

} // namespace cimple

#endif
