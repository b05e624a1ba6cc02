// The voltage sensors of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_VOLTAGESENSOR_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_VOLTAGESENSOR_PROVIDER_H

#include "common/Sensor_Provider.h"

#include "VRAX_VoltageSensor_Methods.h"

namespace cimple
{

class VRAX_VoltageSensor_Provider : public Sensor_Provider<VRAX_VoltageSensor>,
                                    public VRAX_VoltageSensor_Methods<VRAX_VoltageSensor_Provider>
{
    using Is = VRAX_VoltageSensor;

  public:
    static constexpr const char* kCountKey = "Oper.Switch.VoltSensor.Count";
    static constexpr Attribute<Is> kAttributes[] = {
        {"Oper.Switch.VoltSensor.%d.Description", putUnlessEmpty<&Is::ElementName>},
        reading<&Is::CurrentReading>("Oper.Switch.VoltSensor.%d.Reading"),
        reading<&Is::NominalReading>("Oper.Switch.VoltSensor.%d.Nominal"),
        reading<&Is::LowerThresholdCritical>("Oper.Switch.VoltSensor.%d.CritLow"),
        reading<&Is::UpperThresholdCritical>("Oper.Switch.VoltSensor.%d.CritHigh"),
        state("Oper.Switch.VoltSensor.%d.State"),
    };
    static constexpr const char* kIdKind = "VoltSensor";
    static constexpr const char* kElementName = "Voltage Sensor";
    static constexpr uint16 kSensorType = 3; // Voltage
    static constexpr uint16 kBaseUnits = 5;  // volts
};

} // namespace cimple

#endif
