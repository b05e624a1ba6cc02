// Decoding of UTF-16.
#include "agent/xml/encoding.h"

#include "agent/xml/xml_parser.h"
#include "agent/xml/xml_text.h"

#include <string_view>

namespace cimd
{

namespace
{

using namespace std::string_view_literals;

struct Start
{
    std::string_view bytes;
    XmlEncoding encoding;
    bool bigEndian;
    bool isMark; // and no part of the text
};

constexpr Start kStarts[] = {
    {"\xEF\xBB\xBF"sv, XmlEncoding::Utf8, false, true},
    {"\xFE\xFF"sv, XmlEncoding::Utf16, true, true},
    {"\xFF\xFE"sv, XmlEncoding::Utf16, false, true},
    {"\0<"sv, XmlEncoding::Utf16, true, false},
    {"<\0"sv, XmlEncoding::Utf16, false, false},
};

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::string fromUtf16(std::string_view bytes, bool bigEndian)
{
    const auto unitAt = [&](std::size_t at) -> char32_t
    {
        const char32_t first = static_cast<unsigned char>(bytes[at]);
        const char32_t second = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? first << 8 | second : second << 8 | first;
    };
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at < bytes.size(); at += 2)
    {
        if (bytes.size() - at < 2)
            throw XmlError(text, text.size(), "half a UTF-16 character");
        char32_t character = unitAt(at);
        if (isHighSurrogate(character) && bytes.size() - at >= 4 && isLowSurrogate(unitAt(at + 2)))
        {
            at += 2;
            character = 0x10000 + ((character - 0xD800) << 10) + (unitAt(at) - 0xDC00);
        }
        else if (isHighSurrogate(character) || isLowSurrogate(character))
            throw XmlError(text, text.size(), "not UTF-16");
        appendUtf8(text, character);
    }
    return text;
}

} // namespace

XmlEncoding toUtf8(std::string& text)
{
    for (const Start& start : kStarts)
    {
        if (text.compare(0, start.bytes.size(), start.bytes) != 0)
            continue;
        const std::size_t skipped = start.isMark ? start.bytes.size() : 0;
        if (start.encoding == XmlEncoding::Utf16)
            text = fromUtf16(std::string_view(text).substr(skipped), start.bigEndian);
        else
            text.erase(0, skipped);
        return start.encoding;
    }
    return XmlEncoding::Utf8;
}

} // namespace cimd
