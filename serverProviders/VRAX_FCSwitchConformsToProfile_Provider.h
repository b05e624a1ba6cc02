// The first switch of the fabric conforms to every profile.
#ifndef SERVERPROVIDERS_VRAX_FCSWITCHCONFORMSTOPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_FCSWITCHCONFORMSTOPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"

#include "VRAX_FCSwitchConformsToProfile_Methods.h"

namespace cimple
{

class VRAX_FCSwitchConformsToProfile_Provider
    : public Association_Provider<&VRAX_FCSwitchConformsToProfile::ConformantStandard,
                                  &VRAX_FCSwitchConformsToProfile::ManagedElement>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Creation of VRAX_FCSwitchConformsToProfile failed";

    void build(Pairs& pairs) { pairs.first<VRAX_FCSwitch>().withEach<VRAX_RegisteredProfile>(); }
};

} // namespace cimple

#endif
