// The running firmware image implements every profile.
#ifndef SERVERPROVIDERS_VRAX_PROFILEELEMENTSOFTWAREIDENTITY_PROVIDER_H
#define SERVERPROVIDERS_VRAX_PROFILEELEMENTSOFTWAREIDENTITY_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"
#include "switchProviders/VRAX_SoftwareIdentity_Provider.h"

#include "VRAX_ProfileElementSoftwareIdentity_Methods.h"

namespace cimple
{

class VRAX_ProfileElementSoftwareIdentity_Provider
    : public Association_Provider<&VRAX_ProfileElementSoftwareIdentity::Antecedent,
                                  &VRAX_ProfileElementSoftwareIdentity::Dependent>
{
  public:
    static constexpr Failure_Text kCreationFailed =
        "Failed to create VRAX_ProfileElementSoftwareIdentity instance";

    void build(Pairs& pairs) { pairs.first<VRAX_SoftwareIdentity>().withEach<VRAX_RegisteredProfile>(); }
};

} // namespace cimple

#endif
