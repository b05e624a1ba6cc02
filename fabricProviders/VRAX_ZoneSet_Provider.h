// The zone sets: those that are configured, and the one that the fabric enforces.
#ifndef FABRICPROVIDERS_VRAX_ZONESET_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONESET_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_ZoneSet_Methods.h"

namespace cimple
{

class VRAX_ZoneSet_Provider : public Instance_Provider<VRAX_ZoneSet>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_ZoneSet instance";
    static constexpr Failure_Text kKeysMissing = "VRAX_ZoneSet::One or More Key Properties are not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    void build(Map_Writer<VRAX_ZoneSet>& map);

    // Removes the zone set from the configured database; 90 when that fails.
    Delete_Instance_Status delete_instance(const VRAX_ZoneSet* instance);
};

} // namespace cimple

#endif
