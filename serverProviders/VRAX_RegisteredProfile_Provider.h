// The profiles that the switch implements.
#ifndef SERVERPROVIDERS_VRAX_REGISTEREDPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_REGISTEREDPROFILE_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_RegisteredProfile_Methods.h"

namespace cimple
{

class VRAX_RegisteredProfile_Provider : public Instance_Provider<VRAX_RegisteredProfile>
{
  public:
    void build(Map_Writer<VRAX_RegisteredProfile>& map);
};

} // namespace cimple

#endif
