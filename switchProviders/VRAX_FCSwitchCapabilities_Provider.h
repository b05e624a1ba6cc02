// What the local switch can be configured to be.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHCAPABILITIES_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_FCSwitchCapabilities_Methods.h"

namespace cimple
{

class VRAX_FCSwitchCapabilities_Provider
    : public Local_Switch_Provider<VRAX_FCSwitchCapabilities>,
      public VRAX_FCSwitchCapabilities_Methods<VRAX_FCSwitchCapabilities_Provider>
{
  public:
    static constexpr bool kCreatesFirst = true;
    static constexpr Failure_Text kCreationFailed =
        Failure_Text::line("Failed to create VRAX_FCSwitchCapabilities instance");
    static constexpr Failure_Text kInsertionFailed = Failure_Text::line("Failed to insert instance in map");

    static void fill(VRAX_FCSwitchCapabilities& capabilities, const char* localWwn);
};

} // namespace cimple

#endif
