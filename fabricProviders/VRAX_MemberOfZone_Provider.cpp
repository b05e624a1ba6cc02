// The aliases in a configured zone.
#include "fabricProviders/VRAX_MemberOfZone_Provider.h"

#include "common/zoning_pairs.h"
#include "switchaccess/zoning_list.h"

#include <unordered_set>

namespace cimple
{

void VRAX_MemberOfZone_Provider::build(Pairs& pairs)
{
    if (pairs.all<VRAX_ZoneAlias>().first() == nullptr)
        return;
    const auto nameOf = [](const VRAX_ZoneAlias& alias) { return alias.CollectionAlias.value.c_str(); };
    const Text_Index<VRAX_ZoneAlias> aliases(pairs.all<VRAX_ZoneAlias>(), nameOf);
    // An alias that is known from its own class can be gone from the switch since.
    std::unordered_set<const VRAX_ZoneAlias*> present;
    const auto requirePresent = [&](const VRAX_ZoneAlias& alias)
    {
        if (present.insert(&alias).second &&
            Zone_Members(xpl_fzsGetZoneAliasMemberList, nameOf(alias)).error() != 0)
            fail("xpl_fzsGetZoneAliasMemberList Failed");
    };

    for (const VRAX_Zone* zone : pairs.all<VRAX_Zone>())
    {
        // What the fabric enforces has no aliases.
        if (!hasState(zone->InstanceID.value, kInactive))
            continue;
        const Zone_Members members(xpl_fzsGetZoneMemberList, zone->ElementName.value.c_str());
        if (members.error() != 0)
            fail("xpl_fzsGetZoneMemberList Failed");
        for (std::uint32_t i = 0; i < members.size(); ++i)
        {
            if (!members.isAlias(i))
                continue;
            const auto join = [&](const VRAX_ZoneAlias* alias)
            {
                requirePresent(*alias);
                pairs.join(*zone, *alias);
            };
            aliases.forEach(members.text(i).c_str(), join);
        }
    }
}

} // namespace cimple
