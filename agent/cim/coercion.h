// Making a value one of a declared type.
#ifndef AGENT_CIM_COERCION_H
#define AGENT_CIM_COERCION_H

#include "agent/cim/CimValue.h"

#include <optional>

namespace cimd
{

// For values that say their type: the type must be the declared one. NULL takes the declared type, an
// embedded instance may stand for an embedded object and the other way round. Nothing if the value does not
// fit.
std::optional<CimValue> conform(CimValue value, CimType type, bool isArray);

// For keys, which clients and providers type loosely: any integer in range for an integer, any text that
// reads as the type for a date-time, character, boolean, integer or real. Nothing for NULL, arrays and what
// does not fit.
std::optional<CimValue> coerceKey(const CimValue& value, CimType type);

// For values whose type the sender did not say: a string, an array of strings or NULL, read as the declared
// type.
std::optional<CimValue> readUntyped(const CimValue& value, CimType type, bool isArray);

} // namespace cimd

#endif
