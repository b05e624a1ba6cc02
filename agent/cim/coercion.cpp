// Conversions between value types that lose nothing.
#include "agent/cim/coercion.h"

#include "agent/cim/value_text.h"

#include <utility>

namespace cimd
{
namespace
{

std::optional<CimValue> toInteger(const CimValue& value, CimType type)
{
    if (isUnsigned(value.type()))
    {
        const std::uint64_t number = value.asUnsigned();
        if (isUnsigned(type))
            return number <= maxUnsigned(type) ? std::optional(CimValue::unsignedInteger(type, number))
                                               : std::nullopt;
        if (number > static_cast<std::uint64_t>(maxSigned(type)))
            return std::nullopt;
        return CimValue::signedInteger(type, static_cast<std::int64_t>(number));
    }
    const std::int64_t number = value.asSigned();
    if (isSigned(type))
        return number >= minSigned(type) && number <= maxSigned(type)
                   ? std::optional(CimValue::signedInteger(type, number))
                   : std::nullopt;
    if (number < 0 || static_cast<std::uint64_t>(number) > maxUnsigned(type))
        return std::nullopt;
    return CimValue::unsignedInteger(type, static_cast<std::uint64_t>(number));
}

CimValue retyped(const CimValue& value, CimType type)
{
    return value.isNull() ? CimValue::null(type) : CimValue::embedded(type, value.sharedInstance());
}

} // namespace

std::optional<CimValue> conform(CimValue value, CimType type, bool isArray)
{
    if (value.hasType(type, isArray))
        return value;
    if (value.isNull())
        return CimValue::null(type, isArray);
    if (value.isArray() != isArray || !isEmbedded(value.type()) || !isEmbedded(type))
        return std::nullopt;
    if (!isArray)
        return retyped(value, type);
    CimValue::Elements elements;
    for (const CimValue& element : value.elements())
        elements.push_back(retyped(element, type));
    return CimValue::array(type, std::move(elements));
}

std::optional<CimValue> coerceKey(const CimValue& value, CimType type)
{
    if (value.isNull() || value.isArray())
        return std::nullopt;
    if (value.type() == type)
        return value;
    if (isInteger(value.type()) && isInteger(type))
        return toInteger(value, type);
    if (isReal(value.type()) && isReal(type))
        return type == CimType::Real64 ? CimValue::real64(value.asReal())
                                       : CimValue::real32(static_cast<float>(value.asReal()));
    if (value.type() == CimType::String)
        return parseScalar(type, value.asString());
    if (type == CimType::String && (value.type() == CimType::DateTime || value.type() == CimType::Char16))
    {
        std::string text;
        appendText(text, value);
        return CimValue::string(std::move(text));
    }
    return std::nullopt;
}

std::optional<CimValue> readUntyped(const CimValue& value, CimType type, bool isArray)
{
    if (value.isNull())
        return CimValue::null(type, isArray);
    if (value.type() != CimType::String || type == CimType::String)
        return conform(value, type, isArray);
    if (value.isArray() != isArray)
        return std::nullopt;
    if (!isArray)
        return parseScalar(type, value.asString());
    CimValue::Elements elements;
    for (const CimValue& element : value.elements())
    {
        auto read =
            element.isNull() ? std::optional(CimValue::null(type)) : parseScalar(type, element.asString());
        if (!read)
            return std::nullopt;
        elements.push_back(std::move(*read));
    }
    return CimValue::array(type, std::move(elements));
}

} // namespace cimd
