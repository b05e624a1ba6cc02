// The zones of a zone set.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFZONESET_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFZONESET_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_MemberOfZoneSet_Methods.h"

namespace cimple
{

class VRAX_MemberOfZoneSet_Provider : public Association_Provider<&VRAX_MemberOfZoneSet::Collection, &VRAX_MemberOfZoneSet::Member>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_MemberOfZoneSet instance";
    static constexpr Failure_Text kKeysMissing = "VRAX_MemberOfZoneSet::One or More Key Properties are not populated";

    void build(Pairs& pairs);
};

} // namespace cimple

#endif
