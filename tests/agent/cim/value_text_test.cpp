// Text forms of scalars.
#include "agent/cim/value_text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace cimd
{
namespace
{

// The text that a text reads back as; "-" if it is not of the type.
std::string reread(CimType type, std::string_view text)
{
    const auto value = parseScalar(type, text);
    if (!value)
        return "-";
    EXPECT_EQ(value->type(), type);
    std::string out;
    appendText(out, *value);
    return out;
}

TEST(ValueText, ReadsEachTypeWithinItsRange)
{
    const struct
    {
        CimType type;
        const char* text;
        const char* expected;
    } rows[] = {
        {CimType::Boolean, "TRUE", "TRUE"},
        {CimType::Boolean, " false\n", "FALSE"},
        {CimType::Boolean, "", "-"},
        {CimType::Uint8, "255", "255"},
        {CimType::Uint8, "256", "-"},
        {CimType::Uint8, "-0", "0"},
        {CimType::Uint8, "-1", "-"},
        {CimType::Uint8, "0xfF", "255"},
        {CimType::Uint8, "0x", "-"},
        {CimType::Uint32, "4294967295", "4294967295"},
        {CimType::Uint32, "4294967296", "-"},
        {CimType::Uint64, "18446744073709551615", "18446744073709551615"},
        {CimType::Uint64, "18446744073709551616", "-"},
        {CimType::Sint8, "-128", "-128"},
        {CimType::Sint8, "-129", "-"},
        {CimType::Sint16, "-0x8000", "-32768"},
        {CimType::Sint64, "-9223372036854775808", "-9223372036854775808"},
        {CimType::Real64, "-2.5E-3", "-2.5e-03"},
        {CimType::Real64, "INF", "INF"},
        {CimType::Real64, "-inf", "-INF"},
        {CimType::Real64, "NaN", "NaN"},
        {CimType::Real64, "nan(7)", "-"},
        {CimType::Char16, "\xC3\xA9", "\xC3\xA9"},
        {CimType::Char16, "\xE2\x82\xAC", "\xE2\x82\xAC"},
        {CimType::Char16, "\xC0\x80", "-"},         // overlong
        {CimType::Char16, "\xED\xA0\x80", "-"},     // half of a surrogate pair
        {CimType::Char16, "\xF0\x9F\x98\x80", "-"}, // beyond the basic plane
        {CimType::String, "  kept \n", "  kept \n"},
        {CimType::DateTime, "20240229120000.000000+000", "20240229120000.000000+000"},
        {CimType::Reference, "Class.Key=1", "-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(reread(row.type, row.text), row.expected)
            << typeText(row.type, false) << " \"" << row.text << '"';
}

TEST(ValueText, KeepsEveryBitOfAReal)
{
    for (const double number : {0.1, 1.0 / 3, 5e-324, std::numeric_limits<double>::max(), -0.0})
    {
        std::string text;
        appendText(text, CimValue::real64(number));
        const double read = parseScalar(CimType::Real64, text)->asReal();
        EXPECT_EQ(read, number) << text;
        EXPECT_EQ(std::signbit(read), std::signbit(number)) << text;
    }
    std::string text;
    appendText(text, CimValue::real32(0.1F));
    EXPECT_EQ(text, "1.0e-01"); // not the digits of the double next to it
}

} // namespace
} // namespace cimd
