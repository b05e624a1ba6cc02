// The fabric conforms to every profile.
#ifndef SERVERPROVIDERS_VRAX_FABRICCONFORMSTOPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_FABRICCONFORMSTOPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_Fabric_Provider.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"

#include "VRAX_FabricConformsToProfile_Methods.h"

namespace cimple
{

class VRAX_FabricConformsToProfile_Provider
    : public Association_Provider<&VRAX_FabricConformsToProfile::ConformantStandard,
                                  &VRAX_FabricConformsToProfile::ManagedElement>
{
  public:
    static constexpr Failure_Text kCreationFailed =
        "Unable to create element for VRAX_FabricConformsToProfile_map";

    void build(Pairs& pairs) { pairs.first<VRAX_Fabric>().withEach<VRAX_RegisteredProfile>(); }
};

} // namespace cimple

#endif
