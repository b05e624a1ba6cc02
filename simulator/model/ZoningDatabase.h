// A zoning database as administrators edit it, with the rules of its changes.
#ifndef SIMULATOR_MODEL_ZONINGDATABASE_H
#define SIMULATOR_MODEL_ZONINGDATABASE_H

#include "simulator/model/OrderedMap.h"
#include "simulator/model/Shared.h"
#include "simulator/model/ZoneMember.h"
#include "simulator/scenario/ZoningScenario.h"

#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

using ZoneMembers = OrderedMap<ZoneMember>;
using ZoneNames = OrderedMap<std::string>;

struct Zone
{
    ZoneType type = ZoneType::soft;
    ZoneMembers members;
};

// What has members.
enum class MemberHolder
{
    zone,
    alias
};

// 0 for a name that an object can have; XPL_INVALID_PARAMETER for an empty or too long one, XPL_INVALID_NAME
// for one with other characters.
std::int32_t checkZoneName(std::string_view name);

// Names are compared exactly. Changes return 0 or the status with which the switch refuses; nothing is
// changed then. A copy costs little until it is changed (see Shared).
class ZoningDatabase
{
  public:
    explicit ZoningDatabase(const ZoningLimits& limits) : _limits(limits) {}

    const OrderedMap<std::string, Shared<ZoneNames>>& zoneSets() const { return _zoneSets; }
    const OrderedMap<std::string, Shared<Zone>>& zones() const { return _zones; }
    const OrderedMap<std::string, Shared<ZoneMembers>>& aliases() const { return _aliases; }
    // Null when there is no such zone or alias.
    const ZoneMembers* members(MemberHolder kind, std::string_view holder) const;
    const ZoningLimits& limits() const { return _limits; }

    std::int32_t addZoneSet(std::string_view name);
    std::int32_t removeZoneSet(std::string_view name); // its zones stay
    std::int32_t addZone(std::string_view name, ZoneType type);
    std::int32_t deleteZone(std::string_view name); // it goes from all zone sets
    std::int32_t addAlias(std::string_view name);
    std::int32_t deleteAlias(std::string_view name); // it goes from all zones
    std::int32_t addToZoneSet(std::string_view zone, std::string_view zoneSet);
    // All or none.
    std::int32_t
    addMembers(MemberHolder kind, std::string_view holder, const std::vector<ZoneMember>& members);
    std::int32_t removeMember(MemberHolder kind, std::string_view holder, const ZoneMember& member);

  private:
    ZoneMembers* ownMembers(MemberHolder kind, std::string_view holder);
    // Whether the holder, which has `present`, can take the member.
    std::int32_t checkMember(MemberHolder kind, const ZoneMembers& present, const ZoneMember& member) const;

    ZoningLimits _limits;
    OrderedMap<std::string, Shared<ZoneNames>> _zoneSets;
    OrderedMap<std::string, Shared<Zone>> _zones;
    OrderedMap<std::string, Shared<ZoneMembers>> _aliases;
    std::size_t _zoneMembers = 0; // of all zones
};

} // namespace simulator

#endif
