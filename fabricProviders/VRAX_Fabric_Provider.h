// The fabric that the switch belongs to.
#ifndef FABRICPROVIDERS_VRAX_FABRIC_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRIC_PROVIDER_H

#include "common/Admin_Domain_Provider.h"

#include "VRAX_Fabric_Methods.h"

namespace cimple
{

class VRAX_Fabric_Provider : public Admin_Domain_Provider<VRAX_Fabric>,
                             public VRAX_Fabric_Methods<VRAX_Fabric_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed =
        Failure_Text::line("VRAX_Fabric instance creation failed");
    static constexpr Failure_Text kKeysMissing =
        Failure_Text::line("VRAX_Fabric::One or More Key Properties not populated");
    static constexpr Failure_Text kInsertionFailed = Failure_Text::line("Failed to insert instance into map");
};

} // namespace cimple

#endif
