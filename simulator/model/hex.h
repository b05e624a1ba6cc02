// Hexadecimal texts: numbers, World Wide Names and byte strings.
#ifndef SIMULATOR_MODEL_HEX_H
#define SIMULATOR_MODEL_HEX_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

// True when the text is exactly `digits` hexadecimal digits of either case.
bool isHex(std::string_view text, std::size_t digits);

// Parses digits of either case, without prefix; false when the text is empty, too large or anything else.
bool parseHex(std::string_view text, std::uint64_t& value);

// Lower-case digits, padded with zeros on the left to `width`.
std::string hexOf(std::uint64_t value, std::size_t width = 1);

// Two digits a byte; the text must have an even number of digits.
std::vector<std::uint8_t> bytesFromHex(std::string_view text);
std::string hexFromBytes(const std::vector<std::uint8_t>& bytes);

// ASCII letters in one case, whatever the locale.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

// Parses a whole decimal text that is a non-negative int; false for anything else, signs and blanks included.
bool parseDecimal(std::string_view text, int& value);
// The same of a number of a port or part: "07" is none.
bool parseIndex(std::string_view text, int& value);

// "36.50" of 3650 with two decimals.
std::string decimalText(int value, int decimals);

} // namespace simulator

#endif
