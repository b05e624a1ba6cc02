// The members of a zone alias.
#include "fabricProviders/VRAX_ZoneAliasElementSettingData_Provider.h"

#include "common/Containing_Search.h"
#include "common/zoning_ids.h"
#include "switchaccess/zoning_list.h"

#include <vector>

namespace cimple
{

// A member's membership is the first whose InstanceID contains the member's text. Most often that is all of
// what follows the second colon, but it may also be part of it, as of "1:A" and "1:AB", of the switch's WWN,
// or of both, as "9:2" of "0009:2100026E1A40B7C1". So it cannot be looked up by what follows the colon.
void VRAX_ZoneAliasElementSettingData_Provider::build(Pairs& pairs)
{
    if (pairs.all<VRAX_ZoneMembership>().first() == nullptr)
        return;
    typedef Containing_Search<VRAX_ZoneMembership> Search;
    Search memberships;
    struct Alias
    {
        const VRAX_ZoneAlias* alias;
        std::vector<Search::Number> members;
    };
    std::vector<Alias> aliases;
    for (const VRAX_ZoneAlias* alias : pairs.all<VRAX_ZoneAlias>())
    {
        if (afterColon(alias->InstanceID.value, 1) == nullptr)
        {
            logCritical(kSource, "load", "Poorly formatted ZoneAlias_Map InstanceID", __LINE__);
            continue;
        }
        const Zone_Members members(xpl_fzsGetZoneAliasMemberList, alias->CollectionAlias.value.c_str());
        if (members.error() != 0)
            fail("xpl_fzsGetZoneAliasMemberList Failed");
        aliases.push_back({alias, {}});
        aliases.back().members.reserve(members.size());
        for (std::uint32_t i = 0; i < members.size(); ++i)
            aliases.back().members.push_back(memberships.want(members.text(i)));
        if (isDueALine(aliases.size()))
            cim_log(kLogInfo,
                    "VRAX_ZoneAliasSettingData, processed %d alias entries\n",
                    static_cast<int>(aliases.size()));
    }

    memberships.run(pairs.all<VRAX_ZoneMembership>(),
                    [](const VRAX_ZoneMembership& one) { return one.InstanceID.value.c_str(); });
    for (const Alias& one : aliases)
        for (const Search::Number member : one.members)
            if (const VRAX_ZoneMembership* membership = memberships.find(member))
                pairs.join(*one.alias, *membership);
}

} // namespace cimple
