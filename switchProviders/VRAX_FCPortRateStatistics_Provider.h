// Current byte and frame rates of the local ports.
#ifndef SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCPORTRATESTATISTICS_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_FCPortRateStatistics_Methods.h"

namespace cimple
{

class VRAX_FCPortRateStatistics_Provider
    : public Instance_Provider_Base<VRAX_FCPortRateStatistics_Provider, VRAX_FCPortRateStatistics>,
      public VRAX_FCPortRateStatistics_Methods<VRAX_FCPortRateStatistics_Provider>
{
  public:
    static constexpr const char* kSource = "switchProviders/VRAX_FCPortRateStatistics_Provider";

    void build(Map_Writer<VRAX_FCPortRateStatistics>& map);
};

} // namespace cimple

#endif
