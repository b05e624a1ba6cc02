// The first switch of the fabric conforms to every sub-profile.
#ifndef SERVERPROVIDERS_VRAX_FCSWITCHCONFORMSTOSUBPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_FCSWITCHCONFORMSTOSUBPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "serverProviders/VRAX_RegisteredSubProfile_Provider.h"

#include "VRAX_FCSwitchConformsToSubProfile_Methods.h"

namespace cimple
{

class VRAX_FCSwitchConformsToSubProfile_Provider
    : public Association_Provider<&VRAX_FCSwitchConformsToSubProfile::ConformantStandard,
                                  &VRAX_FCSwitchConformsToSubProfile::ManagedElement>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_FCSwitchConformsToSubProfile";

    void build(Pairs& pairs) { pairs.first<VRAX_FCSwitch>().withEach<VRAX_RegisteredSubProfile>(); }
};

} // namespace cimple

#endif
