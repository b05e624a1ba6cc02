// The members of a zone alias.
#ifndef FABRICPROVIDERS_VRAX_ZONEALIASELEMENTSETTINGDATA_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONEALIASELEMENTSETTINGDATA_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"

#include "VRAX_ZoneAliasElementSettingData_Methods.h"

namespace cimple
{

class VRAX_ZoneAliasElementSettingData_Provider
    : public Association_Provider<&VRAX_ZoneAliasElementSettingData::ManagedElement,
                                  &VRAX_ZoneAliasElementSettingData::SettingData>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed =
        "Failed to create VRAX_ZoneAliasElementSettingData instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ZoneAliasElementSettingData::One or More Key Properties are not populated";

    void build(Pairs& pairs);
};

} // namespace cimple

#endif
