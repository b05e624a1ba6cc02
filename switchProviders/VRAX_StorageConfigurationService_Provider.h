// The storage configuration service: registered for clients that ask for it, never present.
#ifndef SWITCHPROVIDERS_VRAX_STORAGECONFIGURATIONSERVICE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_STORAGECONFIGURATIONSERVICE_PROVIDER_H

#include "common/Unmapped_Provider.h"

#include "VRAX_StorageConfigurationService_Methods.h"

namespace cimple
{

class VRAX_StorageConfigurationService_Provider
    : public Unmapped_Provider<VRAX_StorageConfigurationService>,
      public VRAX_StorageConfigurationService_Methods<VRAX_StorageConfigurationService_Provider>
{
};

} // namespace cimple

#endif
