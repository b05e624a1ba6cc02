// The user log and the alarm log of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_RECORDLOG_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_RECORDLOG_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_RecordLog_Methods.h"

namespace cimple
{

// The methods send their commands in the switch's administrative mode, under the map's write lock. They
// return
//   0 done, 3 the logs cannot be loaded or the switch refused a command, 5 no such log, or not such a state;
// the call itself succeeds always.
class VRAX_RecordLog_Provider : public Instance_Provider<VRAX_RecordLog>,
                                public VRAX_RecordLog_Methods<VRAX_RecordLog_Provider>
{
  public:
    void build(Map_Writer<VRAX_RecordLog>& map);

    Invoke_Method_Status ClearLog(const VRAX_RecordLog* self, Property<uint32>& return_value);

    // 2 starts the user log and 6 stops it, whichever log is asked: the alarm log cannot be stopped.
    Invoke_Method_Status RequestStateChange(const VRAX_RecordLog* self,
                                            const Property<uint16>& RequestedState,
                                            CIM_ConcreteJob*& Job,
                                            const Property<Datetime>& TimeoutPeriod,
                                            Property<uint32>& return_value);
};

} // namespace cimple

#endif
