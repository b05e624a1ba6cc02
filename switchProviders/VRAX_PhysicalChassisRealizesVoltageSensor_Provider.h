// The chassis holds the voltage sensors.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESVOLTAGESENSOR_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESVOLTAGESENSOR_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"
#include "switchProviders/VRAX_VoltageSensor_Provider.h"

#include "VRAX_PhysicalChassisRealizesVoltageSensor_Methods.h"

namespace cimple
{

class VRAX_PhysicalChassisRealizesVoltageSensor_Provider
    : public Association_Provider<&VRAX_PhysicalChassisRealizesVoltageSensor::Antecedent,
                                  &VRAX_PhysicalChassisRealizesVoltageSensor::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_PhysicalChassis>().withEach<VRAX_VoltageSensor>(); }
};

} // namespace cimple

#endif
