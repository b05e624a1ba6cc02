// CMPI values to CIM values and back.
#ifndef AGENT_BROKER_CONVERSION_H
#define AGENT_BROKER_CONVERSION_H

#include "agent/broker/objects.h"

#include <cmpift.h>
#include <optional>

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

// Runs the body of a getter, which gives nothing if it found nothing.
template <class Find>
CMPIData answerFound(CMPIStatus* rc, Find find) noexcept
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const std::optional<CMPIData> found = answer(&status, find);
    if (!found && status.rc == CMPI_RC_OK)
        return notFound(rc);
    if (rc)
        *rc = status;
    return found.value_or(CMPIData{});
}

// The same for one whose body gives a pointer to the value.
template <class Find>
CMPIData answerValue(CMPIStatus* rc, Find find, CMPIValueState state = CMPI_goodValue) noexcept
{
    return answerFound(rc,
                       [&]() -> std::optional<CMPIData>
                       {
                           const CimValue* value = find();
                           return value ? std::optional(toCmpi(*value, state)) : std::nullopt;
                       });
}

// The same for one of several items by its place, with its name.
template <class Items>
CMPIData answerItem(CMPIStatus* rc,
                    const Items& items,
                    CMPICount index,
                    CMPIString** name,
                    CMPIValueState state = CMPI_goodValue)
{
    return answerValue(
        rc,
        [&]() -> const CimValue*
        {
            const auto& all = items();
            if (index >= all.size())
                return nullptr;
            if (name)
                *name = trackString(all[index].name.str());
            return &all[index].value;
        },
        state);
}

} // namespace cimd

#endif
