// The firmware images of the local switch: the running one, and the one that stands by, if any.
#ifndef SWITCHPROVIDERS_VRAX_SOFTWAREIDENTITY_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_SOFTWAREIDENTITY_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_SoftwareIdentity_Methods.h"

namespace cimple
{

// The running image is always the first.
class VRAX_SoftwareIdentity_Provider : public Instance_Provider<VRAX_SoftwareIdentity>
{
  public:
    void build(Map_Writer<VRAX_SoftwareIdentity>& map);
};

} // namespace cimple

#endif
