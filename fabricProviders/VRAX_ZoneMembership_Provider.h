// The members of zones and aliases.
#ifndef FABRICPROVIDERS_VRAX_ZONEMEMBERSHIP_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONEMEMBERSHIP_PROVIDER_H

#include "common/Composite_Provider.h"
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_ZoneMembership_Methods.h"

namespace cimple
{

class VRAX_ZoneMembership_Provider : public Composite_Provider<VRAX_ZoneMembership, VRAX_Zone, VRAX_ZoneAlias>
{
  public:
    // The key does not say who holds the member: of several zones and aliases that do, the first counts.
    static constexpr Failure_Text kInsertionFailed = Failure_Text::none();

    class Writer;
    void buildFrom(Map_Writer<VRAX_ZoneMembership>& map, const Locked_Ends& ends);

    // Removes the member from its holder in an edit session of its own; 93 when that fails. The next load
    // shows it.
    Delete_Instance_Status delete_instance(const VRAX_ZoneMembership* instance);
};

} // namespace cimple

#endif
