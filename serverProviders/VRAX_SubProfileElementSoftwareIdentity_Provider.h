// The running firmware image implements every sub-profile.
#ifndef SERVERPROVIDERS_VRAX_SUBPROFILEELEMENTSOFTWAREIDENTITY_PROVIDER_H
#define SERVERPROVIDERS_VRAX_SUBPROFILEELEMENTSOFTWAREIDENTITY_PROVIDER_H

#include "common/Association_Provider.h"
#include "serverProviders/VRAX_RegisteredSubProfile_Provider.h"
#include "switchProviders/VRAX_SoftwareIdentity_Provider.h"

#include "VRAX_SubProfileElementSoftwareIdentity_Methods.h"

namespace cimple
{

class VRAX_SubProfileElementSoftwareIdentity_Provider
    : public Association_Provider<&VRAX_SubProfileElementSoftwareIdentity::Antecedent,
                                  &VRAX_SubProfileElementSoftwareIdentity::Dependent>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_SubProfileElementSoftwareIdentity";

    void build(Pairs& pairs) { pairs.first<VRAX_SoftwareIdentity>().withEach<VRAX_RegisteredSubProfile>(); }
};

} // namespace cimple

#endif
