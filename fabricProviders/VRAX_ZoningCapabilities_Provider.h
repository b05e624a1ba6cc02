// How much zoning the switch can hold.
#ifndef FABRICPROVIDERS_VRAX_ZONINGCAPABILITIES_PROVIDER_H
#define FABRICPROVIDERS_VRAX_ZONINGCAPABILITIES_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_ZoningCapabilities_Methods.h"

namespace cimple
{

class VRAX_ZoningCapabilities_Provider
    : public Local_Switch_Provider<VRAX_ZoningCapabilities>,
      public VRAX_ZoningCapabilities_Methods<VRAX_ZoningCapabilities_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_ZoningCapabilities instance";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_ZoningCapabilities::One or More Key Properties are not populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    static void fill(VRAX_ZoningCapabilities& capabilities, const char* localWwn);
};

} // namespace cimple

#endif
