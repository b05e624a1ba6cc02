// The storage area network that the fabric is part of.
#ifndef FABRICPROVIDERS_VRAX_SAN_PROVIDER_H
#define FABRICPROVIDERS_VRAX_SAN_PROVIDER_H

#include "fabricProviders/Admin_Domain_Provider.h"

#include "VRAX_SAN_Methods.h"

namespace cimple
{

class VRAX_SAN_Provider : public Admin_Domain_Provider<VRAX_SAN_Provider, VRAX_SAN>,
                          public VRAX_SAN_Methods<VRAX_SAN_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_SAN_Provider";
    static constexpr const char* kCreationFailed = "Failed to create VRAX_SAN instance";
    static constexpr const char* kKeysMissing = "VRAX_SAN:: One or More Key properties are not populated";
    static constexpr const char* kInsertionFailed = "Failed to insert instance in map";
};

} // namespace cimple

#endif
