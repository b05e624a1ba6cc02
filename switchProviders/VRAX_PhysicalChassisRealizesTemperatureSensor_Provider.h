// The chassis holds the temperature sensors.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESTEMPERATURESENSOR_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALCHASSISREALIZESTEMPERATURESENSOR_PROVIDER_H

#include "common/Association_Provider.h"
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"
#include "switchProviders/VRAX_TemperatureSensor_Provider.h"

#include "VRAX_PhysicalChassisRealizesTemperatureSensor_Methods.h"

namespace cimple
{

class VRAX_PhysicalChassisRealizesTemperatureSensor_Provider
    : public Association_Provider<&VRAX_PhysicalChassisRealizesTemperatureSensor::Antecedent,
                                  &VRAX_PhysicalChassisRealizesTemperatureSensor::Dependent>
{
  public:
    void build(Pairs& pairs) { pairs.first<VRAX_PhysicalChassis>().withEach<VRAX_TemperatureSensor>(); }
};

} // namespace cimple

#endif
