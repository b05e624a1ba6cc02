// The members of a zone.
#ifndef FABRICPROVIDERS_VRAX_ZONEELEMENTSETTINGDATA_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONEELEMENTSETTINGDATA_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"

#include "VRAX_ZoneElementSettingData_Methods.h"

namespace cimple
{

class VRAX_ZoneElementSettingData_Provider
    : public Association_Provider<&VRAX_ZoneElementSettingData::ManagedElement,
                                  &VRAX_ZoneElementSettingData::SettingData>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kCreationFailed = "Failed to allocate VRAX_ZoneElementSettingData instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ZoneElementSettingData::One or More Key Properties are not populated";

    void build(Pairs& pairs);

  private:
    class Memberships;
    class Alias_Members;
};

} // namespace cimple

#endif
