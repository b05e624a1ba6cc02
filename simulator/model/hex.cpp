// Hexadecimal texts: numbers, World Wide Names and byte strings.
#include "simulator/model/hex.h"

#include <algorithm>
#include <charconv>

namespace simulator
{
namespace
{

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

} // namespace

bool isHex(std::string_view text, std::size_t digits)
{
    return text.size() == digits && std::all_of(text.begin(), text.end(), isHexDigit);
}

bool parseHex(std::string_view text, std::uint64_t& value)
{
    if (!isHex(text, text.size()))
        return false;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::string hexOf(std::uint64_t value, std::size_t width)
{
    char digits[16] = {};
    const auto result = std::to_chars(digits, digits + sizeof digits, value, 16);
    const std::string text(digits, result.ptr);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

std::vector<std::uint8_t> bytesFromHex(std::string_view text)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    {
        std::uint64_t value = 0;
        parseHex(text.substr(i, 2), value);
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

std::string hexFromBytes(const std::vector<std::uint8_t>& bytes)
{
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes)
        text += hexOf(byte, 2);
    return text;
}

std::string upperCase(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    return result;
}

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    return result;
}

bool parseDecimal(std::string_view text, int& value)
{
    if (text.empty() || text.front() == '-')
        return false;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 10);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool parseIndex(std::string_view text, int& value)
{
    const bool padded = text.size() > 1 && text.front() == '0';
    return !padded && parseDecimal(text, value);
}

std::string decimalText(int value, int decimals)
{
    std::string digits = std::to_string(value < 0 ? -static_cast<std::int64_t>(value) : value);
    const auto after = static_cast<std::size_t>(decimals);
    if (digits.size() <= after)
        digits.insert(0, after + 1 - digits.size(), '0');
    if (after > 0)
        digits.insert(digits.size() - after, ".");
    return (value < 0 ? "-" : "") + digits;
}

} // namespace simulator
