// Single values out of CMPI data, checked for type and range.
#ifndef TOOLKIT_ADAPTER_FROM_CMPI_VALUE_H
#define TOOLKIT_ADAPTER_FROM_CMPI_VALUE_H

#include "Failure.h"
#include "scalars.h"
#include <cmpimacs.h>

#include <limits>
#include <string>

namespace cimple_cmpi
{

// "uint32", "string array": for messages.
std::string typeName(CMPIType type);

[[noreturn]] void refuseType(CMPIType type, CMPIType expected);

// The text of a string value; CMPI_chars is not supposed to come from a broker but is understood.
cimple::String stringFrom(const CMPIData& data);
cimple::Datetime datetimeFrom(const CMPIData& data);

// An integer of whatever width and sign: magnitude and sign. False if the value is no integer.
bool integerFrom(const CMPIData& data, cimple::uint64& magnitude, bool& negative);

// A value of exactly the type of T.
template <class T>
T valueFrom(const CMPIData& data)
{
    if constexpr (std::is_same_v<T, cimple::String>)
        return stringFrom(data);
    else if constexpr (std::is_same_v<T, cimple::Datetime>)
        return datetimeFrom(data);
    else
    {
        if (data.type != Scalar<T>::kType)
            refuseType(data.type, Scalar<T>::kType);
        if constexpr (std::is_same_v<T, cimple::boolean>)
            return data.value.boolean != 0;
        else
            return data.value.*Scalar<T>::kMember;
    }
}

template <class T>
inline constexpr bool isInteger = std::is_integral_v<T> && !std::is_same_v<T, cimple::boolean>;

// The value of a key, which clients and brokers hand over with a type that is only about right: any integer
// for an integer, text for a datetime or a character.
template <class T>
T keyFrom(const CMPIData& data)
{
    cimple::uint64 magnitude = 0;
    bool negative = false;
    if constexpr (isInteger<T>)
    {
        if (data.type != Scalar<T>::kType && integerFrom(data, magnitude, negative))
        {
            typedef std::numeric_limits<T> Limits;
            const cimple::uint64 max = static_cast<cimple::uint64>(Limits::max());
            // The magnitude of the smallest value is one more than the largest value.
            const cimple::uint64 limit = !negative ? max : Limits::is_signed ? max + 1 : 0;
            if (magnitude > limit)
                throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                              (negative ? "-" : "") + std::to_string(magnitude) + " does not fit " +
                                  typeName(Scalar<T>::kType));
            return static_cast<T>(negative ? 0 - magnitude : magnitude);
        }
    }
    if constexpr (std::is_same_v<T, cimple::char16>)
    {
        if (data.type == CMPI_string)
        {
            const cimple::String text = stringFrom(data);
            if (text.size() == 1)
                return cimple::char16(static_cast<unsigned char>(text[0]));
        }
    }
    return valueFrom<T>(data);
}

template <class T>
cimple::Array<T> arrayFrom(const CMPIArray* array)
{
    cimple::Array<T> result;
    const CMPICount size = CMGetArrayCount(array, nullptr);
    result.reserve(size);
    for (CMPICount i = 0; i < size; i++)
    {
        const CMPIData data = CMGetArrayElementAt(array, i, nullptr);
        if (data.state & CMPI_nullValue)
            throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, "element " + std::to_string(i) + " is NULL");
        result.append(valueFrom<T>(data));
    }
    return result;
}

} // namespace cimple_cmpi

#endif
