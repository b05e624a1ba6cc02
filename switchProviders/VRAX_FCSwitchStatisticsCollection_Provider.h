// The statistics collection of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_FCSWITCHSTATISTICSCOLLECTION_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_FCSWITCHSTATISTICSCOLLECTION_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "switchProviders/VRAX_StatisticsCollection_Provider.h"

#include "VRAX_FCSwitchStatisticsCollection_Methods.h"

namespace cimple
{

class VRAX_FCSwitchStatisticsCollection_Provider
    : public Association_Provider<&VRAX_FCSwitchStatisticsCollection::Antecedent,
                                  &VRAX_FCSwitchStatisticsCollection::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.local<VRAX_FCSwitch>().withFirst<VRAX_StatisticsCollection>(); }
};

} // namespace cimple

#endif
