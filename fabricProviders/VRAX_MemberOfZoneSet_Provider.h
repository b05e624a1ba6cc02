// The zones of a zone set.
#ifndef FABRICPROVIDERS_VRAX_MEMBEROFZONESET_PROVIDER_H
#define FABRICPROVIDERS_VRAX_MEMBEROFZONESET_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_MemberOfZoneSet_Methods.h"

namespace cimple
{

class VRAX_MemberOfZoneSet_Provider
    : public Association_Provider<&VRAX_MemberOfZoneSet::Collection, &VRAX_MemberOfZoneSet::Member>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_MemberOfZoneSet instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_MemberOfZoneSet::One or More Key Properties are not populated";

    void build(Pairs& pairs);

    // Joins these at once, after the switch was told to. What is there already stays. Takes the map's write
    // lock.
    static void addPair(const VRAX_ZoneSet& zoneSet, const VRAX_Zone& zone);
};

} // namespace cimple

#endif
