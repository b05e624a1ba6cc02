// All statistics of the local ports belong to the collection.
#ifndef SWITCHPROVIDERS_VRAX_MEMBEROFSTATISTICSCOLLECTION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_MEMBEROFSTATISTICSCOLLECTION_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"

#include "VRAX_MemberOfStatisticsCollection_Methods.h"

namespace cimple
{

class VRAX_MemberOfStatisticsCollection_Provider
    : public Association_Provider<
          &VRAX_MemberOfStatisticsCollection::Collection,
          &VRAX_MemberOfStatisticsCollection::Member,
          Ends<VRAX_StatisticsCollection, VRAX_FCPortStatistics, VRAX_FCPortRateStatistics>>
{
  public:
    void build(Pairs& pairs)
    {
        const auto collection = pairs.first<VRAX_StatisticsCollection>();
        collection.withEach<VRAX_FCPortStatistics>();
        collection.withEach<VRAX_FCPortRateStatistics>();
    }
};

} // namespace cimple

#endif
