// The collection of the local switch's statistics.
#ifndef SWITCHPROVIDERS_VRAX_STATISTICSCOLLECTION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_STATISTICSCOLLECTION_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_StatisticsCollection_Methods.h"

namespace cimple
{

class VRAX_StatisticsCollection_Provider
    : public Instance_Provider_Base<VRAX_StatisticsCollection_Provider, VRAX_StatisticsCollection>
{
  public:
    static constexpr const char* kSource = "switchProviders/VRAX_StatisticsCollection_Provider";

    void build(Map_Writer<VRAX_StatisticsCollection>& map);
};

} // namespace cimple

#endif
