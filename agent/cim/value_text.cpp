// Reading and writing scalars as text.
#include "agent/cim/value_text.h"

#include "agent/cim/CimName.h"
#include "xml/scalar_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace cimd
{
namespace
{

using cimxml::appendChar16;
using cimxml::appendNumber;
using cimxml::appendReal;

struct Magnitude
{
    bool negative = false;
    std::uint64_t value = 0;
};

std::optional<Magnitude> parseInteger(std::string_view text)
{
    Magnitude result;
    if (!text.empty() && (text[0] == '+' || text[0] == '-'))
    {
        result.negative = text[0] == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
    {
        base = 16;
        text.remove_prefix(2);
    }
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, result.value, base);
    if (text.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return result;
}

std::optional<CimValue> parseSigned(CimType type, const Magnitude& number)
{
    const auto greatest = static_cast<std::uint64_t>(maxSigned(type));
    if (number.value > greatest + (number.negative ? 1 : 0))
        return std::nullopt;
    if (!number.negative)
        return CimValue::signedInteger(type, static_cast<std::int64_t>(number.value));
    // The least value has no positive counterpart.
    return CimValue::signedInteger(
        type, number.value > greatest ? minSigned(type) : -static_cast<std::int64_t>(number.value));
}

template <class Real>
std::optional<Real> parseReal(std::string_view text)
{
    if (equalNoCase(text, "INF"))
        return std::numeric_limits<Real>::infinity();
    if (equalNoCase(text, "-INF"))
        return -std::numeric_limits<Real>::infinity();
    if (equalNoCase(text, "NaN"))
        return std::numeric_limits<Real>::quiet_NaN();
    if (!text.empty() && text[0] == '+')
        text.remove_prefix(1);
    Real value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// One character of the basic plane in UTF-8.
std::optional<char16_t> parseChar16(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
    unsigned code = 0;
    if (text.size() == 1 && byte(0) < 0x80U)
        code = byte(0);
    else if (text.size() == 2 && (byte(0) & 0xE0U) == 0xC0U && continues(1))
        code = (byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU);
    else if (text.size() == 3 && (byte(0) & 0xF0U) == 0xE0U && continues(1) && continues(2))
        code = (byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
    else
        return std::nullopt;
    const bool overlong = (text.size() == 2 && code < 0x80U) || (text.size() == 3 && code < 0x800U);
    const bool surrogate = code >= 0xD800U && code <= 0xDFFFU;
    if (overlong || surrogate)
        return std::nullopt;
    return static_cast<char16_t>(code);
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kWhiteSpace = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::optional<CimValue> parseScalar(CimType type, std::string_view text)
{
    switch (type)
    {
    case CimType::String:
        return CimValue::string(std::string(text));
    case CimType::Char16:
        if (const auto character = parseChar16(text))
            return CimValue::char16(*character);
        return std::nullopt;
    default:
        break;
    }
    text = trimmed(text);
    if (isUnsigned(type))
    {
        const auto number = parseInteger(text);
        if (!number || number->value > maxUnsigned(type) || (number->negative && number->value != 0))
            return std::nullopt;
        return CimValue::unsignedInteger(type, number->value);
    }
    if (isSigned(type))
    {
        const auto number = parseInteger(text);
        return number ? parseSigned(type, *number) : std::nullopt;
    }
    switch (type)
    {
    case CimType::Boolean:
        if (equalNoCase(text, "true") || equalNoCase(text, "false"))
            return CimValue::boolean(equalNoCase(text, "true"));
        return std::nullopt;
    case CimType::Real32:
        if (const auto number = parseReal<float>(text))
            return CimValue::real32(*number);
        return std::nullopt;
    case CimType::Real64:
        if (const auto number = parseReal<double>(text))
            return CimValue::real64(*number);
        return std::nullopt;
    case CimType::DateTime:
        if (const auto dateTime = CimDateTime::parse(text))
            return CimValue::dateTime(*dateTime);
        return std::nullopt;
    default:
        return std::nullopt; // references and embedded objects have no scalar text
    }
}

void appendText(std::string& out, const CimValue& scalar)
{
    const CimType type = scalar.type();
    if (isUnsigned(type))
        appendNumber(out, scalar.asUnsigned());
    else if (isSigned(type))
        appendNumber(out, scalar.asSigned());
    else if (type == CimType::Real32)
        appendReal(out, static_cast<float>(scalar.asReal()));
    else if (type == CimType::Real64)
        appendReal(out, scalar.asReal());
    else if (type == CimType::Boolean)
        out += scalar.asBoolean() ? "TRUE" : "FALSE";
    else if (type == CimType::Char16)
        appendChar16(out, scalar.asChar16());
    else if (type == CimType::DateTime)
        out += scalar.asDateTime().text();
    else
        out += scalar.asString();
}

std::string quoted(std::string_view text)
{
    constexpr std::size_t kShown = 200;
    std::string result("\"");
    result.append(text.substr(0, kShown)).append(text.size() > kShown ? "...\"" : "\"");
    return result;
}

} // namespace cimd
