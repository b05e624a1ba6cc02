// The storage area network that the fabric is part of.
#ifndef FABRICPROVIDERS_VRAX_SAN_PROVIDER_H
#define FABRICPROVIDERS_VRAX_SAN_PROVIDER_H

#include "common/Admin_Domain_Provider.h"

#include "VRAX_SAN_Methods.h"

namespace cimple
{

class VRAX_SAN_Provider : public Admin_Domain_Provider<VRAX_SAN>, public VRAX_SAN_Methods<VRAX_SAN_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = Failure_Text::line("Failed to create VRAX_SAN instance");
    static constexpr Failure_Text kKeysMissing =
        Failure_Text::line("VRAX_SAN:: One or More Key properties are not populated");
    static constexpr Failure_Text kInsertionFailed = Failure_Text::line("Failed to insert instance in map");
};

} // namespace cimple

#endif
