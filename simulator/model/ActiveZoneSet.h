// What a fabric enforces: a copy of a configured zone set.
#ifndef SIMULATOR_MODEL_ACTIVEZONESET_H
#define SIMULATOR_MODEL_ACTIVEZONESET_H

#include "simulator/model/ZoningDatabase.h"

#include <optional>
#include <string>
#include <string_view>

namespace simulator
{

struct ActiveZoneSet
{
    std::string name;
    OrderedMap<std::string, Zone> zones; // without aliases
};

// A copy of a configured zone set, which must exist: members of aliases in the place of the aliases, each
// member of a zone once.
ActiveZoneSet activeCopy(const ZoningDatabase& database, std::string_view zoneSet);

// True when the active set is enforced by this member of a configured zone, or of an alias that such a zone
// has.
bool isEnforcedBy(const ActiveZoneSet& active,
                  const ZoningDatabase& database,
                  MemberHolder kind,
                  std::string_view holder,
                  const ZoneMember& member);

} // namespace simulator

#endif
