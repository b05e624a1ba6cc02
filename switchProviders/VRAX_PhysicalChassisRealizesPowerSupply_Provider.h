// The chassis holds the power supplies.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESPOWERSUPPLY_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESPOWERSUPPLY_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"
#include "switchProviders/VRAX_PowerSupply_Provider.h"

#include "VRAX_PhysicalChassisRealizesPowerSupply_Methods.h"

namespace cimple
{

class VRAX_PhysicalChassisRealizesPowerSupply_Provider
    : public Association_Provider<&VRAX_PhysicalChassisRealizesPowerSupply::Antecedent,
                                  &VRAX_PhysicalChassisRealizesPowerSupply::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_PhysicalChassis>().withEach<VRAX_PowerSupply>(); }
};

} // namespace cimple

#endif
