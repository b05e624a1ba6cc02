// CMPI values to CIM values and back.
#ifndef AGENT_BROKER_CONVERSION_H
#define AGENT_BROKER_CONVERSION_H

#include "agent/broker/objects.h"

#include <cmpift.h>

namespace cimd
{

// Code of an element type, with the array bit for an array.
CMPIType cmpiType(CimType type, bool isArray);
// The inverse; CmpiError (invalid data type) for codes that carry no CIM value. CMPI_chars counts as string.
CimType cimType(CMPIType type);

// Reads exactly the bytes that belong to the type; texts and objects are copied. CMPI_chars is the text
// itself cast to CMPIValue*. A null pointer, and CMPI_null, give NULL. CmpiError for an unknown type or an
// object that is not ours.
CimValue fromCmpi(const CMPIValue* value, CMPIType type);

// Objects in the result live until the current call returns.
CMPIData toCmpi(const CimValue& value, CMPIValueState state = CMPI_goodValue);

// For getters that found nothing: writes code and state, no exception is worth it.
CMPIData notFound(CMPIStatus* rc);

} // namespace cimd

#endif
