// The aliases in a configured zone.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFZONE_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFZONE_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_MemberOfZone_Methods.h"

namespace cimple
{

class VRAX_MemberOfZone_Provider
    : public Association_Provider<&VRAX_MemberOfZone::Collection, &VRAX_MemberOfZone::Member>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_MemberOfZone instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_MemberOfZone::One or More Key Properties are not populated";

    void build(Pairs& pairs);
};

} // namespace cimple

#endif
