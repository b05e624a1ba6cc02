// Error and traffic counters of the local ports.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTSTATISTICS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTSTATISTICS_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_FCPortStatistics_Methods.h"

namespace cimple
{

class VRAX_FCPortStatistics_Provider
    : public Instance_Provider_Base<VRAX_FCPortStatistics_Provider, VRAX_FCPortStatistics>,
      public VRAX_FCPortStatistics_Methods<VRAX_FCPortStatistics_Provider>
{
  public:
    static constexpr const char* kSource = "switchProviders/VRAX_FCPortStatistics_Provider";

    void build(Map_Writer<VRAX_FCPortStatistics>& map);
};

} // namespace cimple

#endif
