// The shape of the switch's sensors: readings in hundredths of a unit, and a state in the switch's words.
#ifndef COMMON_SENSOR_PROVIDER_H
#define COMMON_SENSOR_PROVIDER_H

#include "common/Numbered_Provider.h"
#include "switchaccess/string_helpers.h"
#include "switchaccess/value_translation.h"

namespace cimple
{

// PROVIDER supplies, besides what Numbered_Provider takes,
//   static constexpr uint16 kSensorType, kBaseUnits: values of CIM_Sensor and CIM_NumericSensor;
// its fill() is this one.
template <class PROVIDER, class CLASS>
class Sensor_Provider_Base : public Numbered_Provider_Base<PROVIDER, CLASS>
{
  public:
    // Row of a reading, or of a threshold; null while the sensor does not tell it, or has none.
    template <auto PROPERTY>
    static constexpr Attribute<CLASS> reading(const char* key)
    {
        return {key, putUnlessEmpty<PROPERTY, strToInt>};
    }
    // Row of the state.
    static constexpr Attribute<CLASS> state(const char* key) { return {key, putState}; }

    static void fill(CLASS& sensor, std::uint16_t, const Attribute_Reader<CLASS>&)
    {
        static constexpr sint32 kHundredths = -2;           // UnitModifier
        static constexpr uint16 kNotARate = 0;              // RateUnits
        static constexpr uint16 kEnabled = 2;               // EnabledState, EnabledDefault
        static constexpr uint16 kRequestNotApplicable = 12; // RequestedState
        sensor.SensorType.set(PROVIDER::kSensorType);
        sensor.BaseUnits.set(PROVIDER::kBaseUnits);
        sensor.UnitModifier.set(kHundredths);
        sensor.RateUnits.set(kNotARate);
        sensor.PossibleStates.set(Array_String::make(kUnknown, "Normal", "Warning", "Critical"));
        sensor.EnabledState.set(kEnabled);
        sensor.RequestedState.set(kRequestNotApplicable);
        sensor.EnabledDefault.set(kEnabled);
    }

  private:
    static constexpr const char* kUnknown = "Unknown";

    static void putState(CLASS& sensor, const char* state)
    {
        sensor.CurrentState.set(*state != '\0' ? state : kUnknown);
        sensor.OperationalStatus.set(smlPartStateToCIMOperationalStatus(state));
        sensor.HealthState.set(smlPartStateToCIMHealthState(state));
    }
};

template <class CLASS>
using Sensor_Provider = Sensor_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
