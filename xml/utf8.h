// UTF-8 and the characters XML allows.
#ifndef XML_UTF8_H
#define XML_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace cimxml
{

// What decodeUtf8() gives for bytes that are not UTF-8.
constexpr char32_t kNoCharacter = 0xFFFFFFFF;

// Reads the character at `position` (which must lie inside the text) and moves past it. Overlong forms,
// surrogates and cut sequences give kNoCharacter and move by one byte.
char32_t decodeUtf8(std::string_view text, std::size_t& position);

void appendUtf8(std::string& out, char32_t character);

// The production Char of XML 1.0.
bool isXmlCharacter(char32_t character);

} // namespace cimxml

#endif
