// Each log holds its entries.
#ifndef SWITCHPROVIDERS_VRAX_LOGMANAGESRECORD_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_LOGMANAGESRECORD_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/log_ids.h"
#include "switchProviders/VRAX_LogEntry_Provider.h"
#include "switchProviders/VRAX_RecordLog_Provider.h"

#include "VRAX_LogManagesRecord_Methods.h"

namespace cimple
{

class VRAX_LogManagesRecord_Provider
    : public Association_Provider<&VRAX_LogManagesRecord::Log, &VRAX_LogManagesRecord::Record>
{
  public:
    void build(Pairs& pairs)
    {
        pairs.equal<VRAX_RecordLog, VRAX_LogEntry>(logKind<VRAX_RecordLog>, logKind<VRAX_LogEntry>);
    }
};

} // namespace cimple

#endif
