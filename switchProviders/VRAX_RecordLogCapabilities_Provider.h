// What can be asked of the logs of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_RECORDLOGCAPABILITIES_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_RECORDLOGCAPABILITIES_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_RecordLogCapabilities_Methods.h"

namespace cimple
{

class VRAX_RecordLogCapabilities_Provider
    : public Instance_Provider<VRAX_RecordLogCapabilities>,
      public VRAX_RecordLogCapabilities_Methods<VRAX_RecordLogCapabilities_Provider>
{
  public:
    void build(Map_Writer<VRAX_RecordLogCapabilities>& map);
};

} // namespace cimple

#endif
