// Translation between the short texts in which the switch speaks of its state and the numbers of CIM.
//
// Pure functions: no locks, no log, no state. Texts are compared exactly, letter case included; the first row
// that fits wins, and what no row knows gives the default named with the function. Numbers are those of the
// value maps of the CIM schema (2.14.0); 16000 and above are vendor values.
#ifndef SWITCHACCESS_VALUE_TRANSLATION_H
#define SWITCHACCESS_VALUE_TRANSLATION_H

#include <cimple/cimple.h>

namespace cimple
{

// --- Text to number ---

// CIM_EnabledLogicalElement.EnabledState; default 0, Unknown.
uint16 smlSwitchStateToCIMEnabledState(const String& state);
uint16 smlPortStateToCIMEnabledState(const String& state);

// CIM_ManagedSystemElement.HealthState; default 0, Unknown.
uint16 smlDiagStatusToCIMHealthState(const String& status);

// HealthState of a part of the switch, such as a sensor or a power supply; default 0, Unknown.
uint16 smlPartStateToCIMHealthState(const String& state);

// VRAX_FCPort.PerformanceTuningMode; default 0.
uint16 smlPerfTuningModeToCIMPerformanceTuningMode(const String& mode);

// VRAX_FCPort.IOStreamGuardState: 2 on, 3 off; default 0.
uint16 smlIOStreamGuardModeToCIMIOStreamGuardState(const String& mode);

// The same from the port's setting for state change notifications, whose sense is the opposite: with the
// guard on, the node gets none. Default 1, automatic.
uint16 smlRSCNEnableToCIMIOStreamGuardState(const String& enable);

// CIM_FCPort.PortType of a running port; default 0, Unknown. A type that is still to be negotiated is
// unknown.
uint16 smlPortTypeToCIMPortType(const String& type);

// CIM_FCPortSettings.RequestedType; default 0.
uint16 smlTypeToCIMType(const String& type);

// Line rate in bits per second (FC-PI: 1.0625 Gbit/s and its multiples, 12.75 Gbit/s for ten gigabit);
// default 0.
uint64 smlSpeedToCIMSpeed(const String& speed);

// All line rates up to this one, rising; none for a speed that no row knows.
Array_uint64 smlSpeedToCIMSpeedsUpTo(const String& speed);

// --- Number to text ---
// What the switch takes as a setting; for a number without a text, "ERROR", which the switch refuses.

String cimRequestedStateToSMLAdminState(uint16 state);
String cimTypeToSMLType(uint16 type);
String cimIOStreamGuardStateToSMLRSCNEnable(uint16 state);
String cimSpeedToSMLSpeed(uint64 bitsPerSecond);

// --- Text to array ---

// CIM_ManagedSystemElement.OperationalStatus of a port; always one value. `second` is the other of the port's
// two states: it tells a port that is out of service on purpose from one in trouble.
Array_uint16 smlPortStateToCIMOperationalStatus(const String& state, const String& second);

// OperationalStatus of a part of the switch; always one value; default {0}, Unknown.
Array_uint16 smlPartStateToCIMOperationalStatus(const String& state);

// Fault codes of a switch, which are vendor values of OperationalStatus: the firmware's power-on self test
// failed; the management processors do not reach, or contradict, the hardware.
constexpr uint16 kSelfTestFault = 32768;
constexpr uint16 kAccessFault = 32769;

// OperationalStatus of a switch: its state, what its faults make of that, then the fault codes themselves.
// Faults are an error unless the self test is among them: alone that is a failure foretold, and beside an
// access fault it is the fault codes that say what is wrong. A switch under diagnostics is left as it is.
Array_uint16 smlSwitchStateToCIMOperationalStatus(const String& state, const Array_uint16& faults);

// CIM_FCPort.SupportedFC4Types of a comma-separated list, without trimming. Of a text of more than 255
// characters the first 255 count.
Array_uint16 smlSupportedFC4TypeToCIMSupportedFC4Type(const String& types);

// One item of such a list: the first `length` characters at `item`. An item is known by any beginning of a
// name, also by an empty one; default 0, Unknown.
uint16 translate_fc4_type(const char* item, int length);

// CIM_FCPort.SupportedCOS of a text like "2,3,F". Of a text of more than 63 characters the first 63 count.
// Never empty: {0}, Unknown, when the text names no class.
Array_uint16 smlSupportedCosToCIMSupportedCos(const String& classes);

} // namespace cimple

#endif
