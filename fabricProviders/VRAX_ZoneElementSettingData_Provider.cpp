// The members of a zone.
#include "fabricProviders/VRAX_ZoneElementSettingData_Provider.h"

#include "common/zoning_ids.h"
#include "switchaccess/zoning_list.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace cimple
{

// Finds memberships by their keys.
class VRAX_ZoneElementSettingData_Provider::Memberships
{
  public:
    explicit Memberships(const Map_View<VRAX_ZoneMembership>& all)
        : _all(all), _keys(makeNull<VRAX_ZoneMembership>())
    {
        if (!_keys)
            fail(VRAX_ZoneMembership_Provider::kCreationFailed);
    }

    // Null when there is none.
    const VRAX_ZoneMembership* find(const std::string& instanceId)
    {
        _keys->InstanceID.set(instanceId.c_str());
        return _all.find(*_keys);
    }

  private:
    const Map_View<VRAX_ZoneMembership> _all;
    Owned<VRAX_ZoneMembership> _keys;
};

// What the aliases that zones refer to stand for; each is read once.
class VRAX_ZoneElementSettingData_Provider::Alias_Members
{
  public:
    const std::vector<std::string>& of(const std::string& alias)
    {
        const auto [place, isNew] = _texts.try_emplace(alias);
        if (isNew)
        {
            const Zone_Members members(xpl_fzsGetZoneAliasMemberList, alias.c_str());
            if (members.error() != 0)
                fail("xpl_fzsGetZoneAliasMemberList Failed");
            for (std::uint32_t i = 0; i < members.size(); ++i)
                if (!members.isAlias(i))
                    place->second.push_back(members.text(i));
        }
        return place->second;
    }

  private:
    std::unordered_map<std::string, std::vector<std::string>> _texts;
};

void VRAX_ZoneElementSettingData_Provider::build(Pairs& pairs)
{
    if (pairs.all<VRAX_ZoneMembership>().first() == nullptr)
        return;
    Memberships memberships(pairs.all<VRAX_ZoneMembership>());
    Alias_Members aliasMembers;
    for (const VRAX_Zone* zone : pairs.all<VRAX_Zone>())
    {
        const Zone_Members members(xpl_fzsGetZoneMemberList, zone->ElementName.value.c_str());
        if (members.error() != 0)
            fail("xpl_fzsGetZoneMemberList Failed");
        // A membership is named as its zone is, but for the member in place of the zone's name.
        const char* const id = zone->InstanceID.value.c_str();
        const char* const name = afterColon(zone->InstanceID.value, 2);
        const std::string prefix(id, name != nullptr ? name : id);
        const auto joinWith = [&](const std::string& member)
        {
            if (const VRAX_ZoneMembership* membership = memberships.find(prefix + member))
                pairs.join(*zone, *membership);
        };
        for (std::uint32_t i = 0; i < members.size(); ++i)
        {
            const std::string text = members.text(i);
            if (!members.isAlias(i))
                joinWith(text);
            else
                for (const std::string& member : aliasMembers.of(text))
                    joinWith(member);
        }
    }
}

} // namespace cimple
