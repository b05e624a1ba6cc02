// The zone aliases, which are configured only.
#ifndef FABRICPROVIDERS_VRAX_ZONEALIAS_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONEALIAS_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_ZoneAlias_Methods.h"

namespace cimple
{

class VRAX_ZoneAlias_Provider : public Instance_Provider<VRAX_ZoneAlias>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_ZoneAlias instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ZoneAlias::One or More Key Properties are not populated";

    void build(Map_Writer<VRAX_ZoneAlias>& map);

    // Deletes the alias in an edit session of its own; 93 when that fails. The next load shows it.
    Delete_Instance_Status delete_instance(const VRAX_ZoneAlias* instance);
};

} // namespace cimple

#endif
