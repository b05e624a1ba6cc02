// The temperature sensors of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_TEMPERATURESENSOR_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_TEMPERATURESENSOR_PROVIDER_H

#include "common/Sensor_Provider.h"

#include "VRAX_TemperatureSensor_Methods.h"

namespace cimple
{

class VRAX_TemperatureSensor_Provider : public Sensor_Provider<VRAX_TemperatureSensor>,
                                        public VRAX_TemperatureSensor_Methods<VRAX_TemperatureSensor_Provider>
{
    using Is = VRAX_TemperatureSensor;

  public:
    static constexpr const char* kCountKey = "Oper.Switch.TempSensor.Count";
    static constexpr Attribute<Is> kAttributes[] = {
        {"Oper.Switch.TempSensor.%d.Description", putUnlessEmpty<&Is::ElementName>},
        reading<&Is::CurrentReading>("Oper.Switch.TempSensor.%d.Reading"),
        reading<&Is::UpperThresholdNonCritical>("Oper.Switch.TempSensor.%d.WarnHigh"),
        reading<&Is::UpperThresholdCritical>("Oper.Switch.TempSensor.%d.CritHigh"),
        state("Oper.Switch.TempSensor.%d.State"),
    };
    static constexpr const char* kIdKind = "TempSensor";
    static constexpr const char* kElementName = "Temperature Sensor";
    static constexpr uint16 kSensorType = 2; // Temperature
    static constexpr uint16 kBaseUnits = 2;  // degrees Celsius
};

} // namespace cimple

#endif
