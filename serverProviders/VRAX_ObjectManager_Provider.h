// The object manager: the agent itself.
#ifndef SERVERPROVIDERS_VRAX_OBJECTMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_OBJECTMANAGER_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_ObjectManager_Methods.h"

namespace cimple
{

class VRAX_ObjectManager_Provider
    : public Instance_Provider_Base<VRAX_ObjectManager_Provider, VRAX_ObjectManager>,
      public VRAX_ObjectManager_Methods<VRAX_ObjectManager_Provider>
{
  public:
    static constexpr const char* kSource = "serverProviders/VRAX_ObjectManager_Provider";

    void build(Map_Writer<VRAX_ObjectManager>& map);
};

} // namespace cimple

#endif
