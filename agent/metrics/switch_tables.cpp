// The table of the switch's metrics. docs/metrics.md shows it to people.
#include "agent/metrics/switch_tables.h"

namespace cimd
{

namespace
{

constexpr MetricType kCounter = MetricType::Counter;
constexpr MetricType kGauge = MetricType::Gauge;
constexpr std::int32_t kMilli = -3;

// The numbers of CIM_ManagedSystemElement and CIM_EnabledLogicalElement, CIM Schema 2.14.
#define OPERATIONAL_STATUS                                                                                   \
    ": 0 unknown, 2 OK, 3 degraded, 4 stressed, 5 predictive failure, 6 error, 7 non-recoverable error, "    \
    "8 starting, 9 stopping, 10 stopped, 11 in service, 12 no contact, 13 lost communication, 15 dormant."
#define HEALTH_STATE                                                                                         \
    ": 0 unknown, 5 OK, 10 degraded, 15 minor failure, 20 major failure, 25 critical failure, "              \
    "30 non-recoverable error."
#define ENABLED_STATE ": 2 enabled, 3 disabled, 5 not applicable, 6 enabled but offline, 7 in test."

const std::vector<SwitchFamily>& portStatistics()
{
    static const std::vector<SwitchFamily> kFamilies{
        {"BytesReceived", {"vrax_port_received_bytes", kCounter, "bytes", "Bytes that the port received."}},
        {"BytesTransmitted", {"vrax_port_transmitted_bytes", kCounter, "bytes", "Bytes that the port sent."}},
        {"PacketsReceived", {"vrax_port_received_frames", kCounter, "", "Frames that the port received."}},
        {"PacketsTransmitted", {"vrax_port_transmitted_frames", kCounter, "", "Frames that the port sent."}},
        {"RXClass2Frames",
         {"vrax_port_received_class2_frames", kCounter, "", "Frames of class 2 that the port received."}},
        {"TXClass2Frames",
         {"vrax_port_transmitted_class2_frames", kCounter, "", "Frames of class 2 that the port sent."}},
        {"RXClass3Frames",
         {"vrax_port_received_class3_frames", kCounter, "", "Frames of class 3 that the port received."}},
        {"TXClass3Frames",
         {"vrax_port_transmitted_class3_frames", kCounter, "", "Frames of class 3 that the port sent."}},
        {"LinkFailures", {"vrax_port_link_failures", kCounter, "", "Failures of the link."}},
        {"LossOfSyncCounter",
         {"vrax_port_sync_losses", kCounter, "", "Times that the receiver lost synchronisation."}},
        {"PrimitiveSeqProtocolErrCount",
         {"vrax_port_primitive_sequence_errors", kCounter, "", "Errors in the primitive sequence protocol."}},
        {"CRCErrors", {"vrax_port_crc_errors", kCounter, "", "Frames received with a wrong checksum."}},
        {"InvalidTransmissionWords",
         {"vrax_port_invalid_words", kCounter, "", "Transmission words received that cannot be decoded."}},
        {"FramesTooShort", {"vrax_port_short_frames", kCounter, "", "Frames received that are too short."}},
        {"FramesTooLong", {"vrax_port_long_frames", kCounter, "", "Frames received that are too long."}},
        {"AddressErrors",
         {"vrax_port_address_errors", kCounter, "", "Frames received for an address that does not exist."}},
        {"BufferCreditNotProvided",
         {"vrax_port_credit_not_provided", kCounter, "", "Times that the port gave no buffer credit."}},
        {"BufferCreditNotReceived",
         {"vrax_port_credit_not_received", kCounter, "", "Times that the port got no buffer credit."}},
        {"LinkResetsReceived",
         {"vrax_port_received_link_resets", kCounter, "", "Link resets that the other side began."}},
        {"LinkResetsTransmitted",
         {"vrax_port_transmitted_link_resets", kCounter, "", "Link resets that the port began."}},
        {"LIPCount",
         {"vrax_port_loop_initializations", kCounter, "", "Initialization primitives received on a loop."}},
        {"FBSYFrames", {"vrax_port_fabric_busy_frames", kCounter, "", "Answers that the fabric is busy."}},
        {"FRJTFrames",
         {"vrax_port_fabric_reject_frames", kCounter, "", "Answers that the fabric rejects a frame."}},
    };
    return kFamilies;
}

} // namespace

const std::vector<SwitchClass>& switchClasses()
{
    static const std::vector<SwitchClass> kClasses{
        {"VRAX_FCSwitch",
         SwitchPart::Switch,
         "",
         {
             {"OperationalStatus",
              {"vrax_switch_operational_status",
               kGauge,
               "",
               "Status of a switch of the fabric" OPERATIONAL_STATUS}},
             {"EnabledState",
              {"vrax_switch_enabled_state", kGauge, "", "State of a switch of the fabric" ENABLED_STATE}},
         }},
        {"VRAX_FCPort",
         SwitchPart::Port,
         "",
         {
             {"OperationalStatus",
              {"vrax_port_operational_status",
               kGauge,
               "",
               "Status of a port of a switch of the fabric" OPERATIONAL_STATUS}},
             {"HealthState",
              {"vrax_port_health_state", kGauge, "", "Health of a port of this switch" HEALTH_STATE}},
             {"EnabledState",
              {"vrax_port_enabled_state",
               kGauge,
               "",
               "State of a port; the fabric does not tell that of another switch's" ENABLED_STATE}},
             {"Speed",
              {"vrax_port_speed_bits_per_second",
               kGauge,
               "bits_per_second",
               "Speed of the link; 0 without one, and at other switches."}},
             {"MaxSpeed",
              {"vrax_port_max_speed_bits_per_second",
               kGauge,
               "bits_per_second",
               "Speed that the port can have; 0 at other switches."}},
             {"BBCredits", {"vrax_port_buffer_credits", kGauge, "", "Buffer-to-buffer credits of the port."}},
         }},
        {"VRAX_FCPortStatistics", SwitchPart::OfPort, "", portStatistics()},
        {"VRAX_FCPortRateStatistics",
         SwitchPart::OfPort,
         "",
         {
             {"RxRate",
              {"vrax_port_receive_bytes_per_second",
               kGauge,
               "bytes_per_second",
               "Bytes received in the last second that the switch measured."}},
             {"TxRate",
              {"vrax_port_transmit_bytes_per_second",
               kGauge,
               "bytes_per_second",
               "Bytes sent in the last second that the switch measured."}},
             {"RxFrameRate",
              {"vrax_port_receive_frames_per_second",
               kGauge,
               "frames_per_second",
               "Frames received in the last second that the switch measured."}},
             {"TxFrameRate",
              {"vrax_port_transmit_frames_per_second",
               kGauge,
               "frames_per_second",
               "Frames sent in the last second that the switch measured."}},
         }},
        {"VRAX_TemperatureSensor",
         SwitchPart::NumberedPart,
         "sensor",
         {
             {"CurrentReading",
              {"vrax_temperature_celsius", kGauge, "celsius", "What a temperature sensor reads."},
              kUnitModifier},
             {"UpperThresholdNonCritical",
              {"vrax_temperature_warning_celsius",
               kGauge,
               "celsius",
               "Above it a sensor's state is Warning."},
              kUnitModifier},
             {"UpperThresholdCritical",
              {"vrax_temperature_critical_celsius",
               kGauge,
               "celsius",
               "Above it a sensor's state is Critical."},
              kUnitModifier},
             {"CurrentState",
              {"vrax_temperature_sensor_state", MetricType::StateSet, "", "State of a temperature sensor."}},
             {"HealthState",
              {"vrax_temperature_sensor_health_state",
               kGauge,
               "",
               "Health of a temperature sensor" HEALTH_STATE}},
         }},
        {"VRAX_VoltageSensor",
         SwitchPart::NumberedPart,
         "sensor",
         {
             {"CurrentReading",
              {"vrax_voltage_volts", kGauge, "volts", "What a voltage sensor reads."},
              kUnitModifier},
             {"NominalReading",
              {"vrax_voltage_nominal_volts", kGauge, "volts", "What a voltage sensor should read."},
              kUnitModifier},
             {"LowerThresholdCritical",
              {"vrax_voltage_lower_critical_volts",
               kGauge,
               "volts",
               "Below it a sensor's state is Critical."},
              kUnitModifier},
             {"UpperThresholdCritical",
              {"vrax_voltage_upper_critical_volts",
               kGauge,
               "volts",
               "Above it a sensor's state is Critical."},
              kUnitModifier},
             {"CurrentState",
              {"vrax_voltage_sensor_state", MetricType::StateSet, "", "State of a voltage sensor."}},
             {"HealthState",
              {"vrax_voltage_sensor_health_state", kGauge, "", "Health of a voltage sensor" HEALTH_STATE}},
         }},
        {"VRAX_PowerSupply",
         SwitchPart::NumberedPart,
         "supply",
         {
             {"OperationalStatus",
              {"vrax_power_supply_operational_status",
               kGauge,
               "",
               "Status of a power supply" OPERATIONAL_STATUS}},
             {"HealthState",
              {"vrax_power_supply_health_state", kGauge, "", "Health of a power supply" HEALTH_STATE}},
             {"TotalOutputPower",
              {"vrax_power_supply_output_watts", kGauge, "watts", "Power that a supply can give."},
              kMilli},
         }},
        {"VRAX_LogicalIOBlade",
         SwitchPart::NumberedPart,
         "blade",
         {
             {"OperationalStatus",
              {"vrax_blade_operational_status", kGauge, "", "Status of an I/O blade" OPERATIONAL_STATUS}},
             {"HealthState", {"vrax_blade_health_state", kGauge, "", "Health of an I/O blade" HEALTH_STATE}},
             {"EnabledState",
              {"vrax_blade_enabled_state", kGauge, "", "State of an I/O blade" ENABLED_STATE}},
         }},
    };
    return kClasses;
}

} // namespace cimd
