// The collection of the local switch's statistics.
#ifndef SWITCHPROVIDERS_VRAX_STATISTICSCOLLECTION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_STATISTICSCOLLECTION_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_StatisticsCollection_Methods.h"

namespace cimple
{

class VRAX_StatisticsCollection_Provider : public Local_Switch_Provider<VRAX_StatisticsCollection>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create instance VRAX_StatisticsCollection";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_statisticsCollection::One or more Key Properties are not Populated";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    static void fill(VRAX_StatisticsCollection& instance, const char* localWwn);
};

} // namespace cimple

#endif
