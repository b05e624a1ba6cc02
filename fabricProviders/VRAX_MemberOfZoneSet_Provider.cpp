// The zones of a zone set.
#include "fabricProviders/VRAX_MemberOfZoneSet_Provider.h"

#include "common/zoning_pairs.h"
#include "switchaccess/zoning_list.h"

namespace cimple
{

void VRAX_MemberOfZoneSet_Provider::build(Pairs& pairs)
{
    if (pairs.all<VRAX_Zone>().first() == nullptr)
        return;
    const Text_Index<VRAX_Zone, Two_Texts> zones(pairs.all<VRAX_Zone>(), stateAndName<VRAX_Zone>);
    for (const VRAX_ZoneSet* zoneSet : pairs.all<VRAX_ZoneSet>())
    {
        const Two_Texts key = stateAndName(*zoneSet);
        const Zoning_Names names(xpl_fzsGetZonesetZoneList, key.second);
        if (names.error() != 0)
            fail("xpl_fzsGetZonesetZoneList failed");
        for (const char* name : names)
            zones.forEach({key.first, name}, [&](const VRAX_Zone* zone) { pairs.join(*zoneSet, *zone); });
    }
}

void VRAX_MemberOfZoneSet_Provider::addPair(const VRAX_ZoneSet& zoneSet, const VRAX_Zone& zone)
{
    Owned<VRAX_MemberOfZoneSet> pair = make();
    pair->Collection = zoneSet.clone();
    pair->Member = zone.clone();
    Write_Guard<VRAX_MemberOfZoneSet> guard;
    guard.insert(pair);
}

} // namespace cimple
