// The object manager conforms to every profile.
#ifndef SERVERPROVIDERS_VRAX_MANAGERCONFORMSTOPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_MANAGERCONFORMSTOPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_ObjectManager_Provider.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"

#include "VRAX_ManagerConformsToProfile_Methods.h"

namespace cimple
{

class VRAX_ManagerConformsToProfile_Provider
    : public Association_Provider<&VRAX_ManagerConformsToProfile::ConformantStandard,
                                  &VRAX_ManagerConformsToProfile::ManagedElement>
{
  public:
    static constexpr Failure_Text kCreationFailed =
        "Unable to create element for VRAX_ManagerConformsToProfile_map";

    void build(Pairs& pairs) { pairs.first<VRAX_ObjectManager>().withEach<VRAX_RegisteredProfile>(); }
};

} // namespace cimple

#endif
