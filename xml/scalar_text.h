// Numbers and characters as CIM-XML writes them (DSP0201, value text).
#ifndef XML_SCALAR_TEXT_H
#define XML_SCALAR_TEXT_H

#include "xml/utf8.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace cimxml
{

template <class Number>
void appendNumber(std::string& out, Number value)
{
    std::array<char, 24> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    out.append(text.data(), result.ptr);
}

// Every bit of the value, with the decimal point that DSP0201 wants.
template <class Real>
void appendReal(std::string& out, Real value)
{
    if (!std::isfinite(value))
    {
        out += std::isnan(value) ? "NaN" : value < 0 ? "-INF" : "INF";
        return;
    }
    std::array<char, 32> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    const std::string_view text(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    const std::size_t exponent = text.find('e');
    out += text.substr(0, exponent);
    if (text.find('.') == std::string_view::npos)
        out += ".0";
    out += text.substr(exponent);
}

// Half of a surrogate pair is no character: U+FFFD stands for it.
inline void appendChar16(std::string& out, char16_t character)
{
    const bool isHalf = character >= 0xD800 && character <= 0xDFFF;
    appendUtf8(out, isHalf ? U'\uFFFD' : character);
}

} // namespace cimxml

#endif
