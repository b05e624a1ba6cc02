// The services by which the local switch is managed, enabled or not.
#ifndef SWITCHPROVIDERS_VRAX_REMOTESERVICEACCESSPOINT_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_REMOTESERVICEACCESSPOINT_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_RemoteServiceAccessPoint_Methods.h"

namespace cimple
{

class VRAX_RemoteServiceAccessPoint_Provider
    : public Instance_Provider<VRAX_RemoteServiceAccessPoint>,
      public VRAX_RemoteServiceAccessPoint_Methods<VRAX_RemoteServiceAccessPoint_Provider>
{
  public:
    void build(Map_Writer<VRAX_RemoteServiceAccessPoint>& map);
};

} // namespace cimple

#endif
