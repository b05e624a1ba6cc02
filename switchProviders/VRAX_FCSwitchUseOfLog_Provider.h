// The local switch writes to its logs.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHUSEOFLOG_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHUSEOFLOG_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_RecordLog_Provider.h"

#include "VRAX_FCSwitchUseOfLog_Methods.h"

namespace cimple
{

class VRAX_FCSwitchUseOfLog_Provider
    : public Association_Provider<&VRAX_FCSwitchUseOfLog::Antecedent, &VRAX_FCSwitchUseOfLog::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withEach<VRAX_RecordLog>(); }
};

} // namespace cimple

#endif
