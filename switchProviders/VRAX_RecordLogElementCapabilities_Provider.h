// Each log has its capabilities.
#ifndef SWITCHPROVIDERS_VRAX_RECORDLOGELEMENTCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_RECORDLOGELEMENTCAPABILITIES_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/log_ids.h"
#include "switchProviders/VRAX_RecordLogCapabilities_Provider.h"
#include "switchProviders/VRAX_RecordLog_Provider.h"

#include "VRAX_RecordLogElementCapabilities_Methods.h"

namespace cimple
{

class VRAX_RecordLogElementCapabilities_Provider
    : public Association_Provider<&VRAX_RecordLogElementCapabilities::ManagedElement,
                                  &VRAX_RecordLogElementCapabilities::Capabilities>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_RecordLog, VRAX_RecordLogCapabilities>(logKind<VRAX_RecordLog>,
                                                                logKind<VRAX_RecordLogCapabilities>);
    }
};

} // namespace cimple

#endif
