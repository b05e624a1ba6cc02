// The fabric that the switch belongs to.
#ifndef FABRICPROVIDERS_VRAX_FABRIC_PROVIDER_H
#define FABRICPROVIDERS_VRAX_FABRIC_PROVIDER_H

#include "fabricProviders/Admin_Domain_Provider.h"

#include "VRAX_Fabric_Methods.h"

namespace cimple
{

class VRAX_Fabric_Provider : public Admin_Domain_Provider<VRAX_Fabric_Provider, VRAX_Fabric>,
                             public VRAX_Fabric_Methods<VRAX_Fabric_Provider>
{
  public:
    static constexpr const char* kSource = "fabricProviders/VRAX_Fabric_Provider";
    static constexpr const char* kCreationFailed = "VRAX_Fabric instance creation failed";
    static constexpr const char* kKeysMissing = "VRAX_Fabric::One or More Key Properties not populated";
    static constexpr const char* kInsertionFailed = "Failed to insert instance into map";
};

} // namespace cimple

#endif
