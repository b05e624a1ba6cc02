// Escaping, and the pieces of a tag.
#include "xml/XmlWriter.h"

#include "xml/utf8.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace cimxml
{

namespace
{

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Bytes that stand for themselves: the printable ASCII characters that are not markup.
constexpr std::array<bool, 256> plainBytes()
{
    std::array<bool, 256> plain{};
    for (std::size_t c = 0x20; c < 0x7F; ++c)
        plain[c] = c != '<' && c != '>' && c != '&' && c != '"';
    return plain;
}

constexpr std::array<bool, 256> kPlain = plainBytes();

// Whether that is so of eight bytes in a row. Subtracting from a byte that is too small sets its highest bit;
// the borrow may reach the byte above, but then the answer is no already.
bool arePlain(const char* bytes)
{
    constexpr std::uint64_t kEach = 0x0101010101010101;
    constexpr std::uint64_t kHighest = 0x80 * kEach;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const auto equal = [](std::uint64_t each, unsigned char c) { return (each ^ c * kEach) - kEach; };
    const std::uint64_t special = word | (word - 0x20 * kEach) | equal(word, 0x7F) |
                                  equal(word | 0x02 * kEach, '>') | // and '<', which lacks the bit
                                  equal(word | 0x04 * kEach, '&');  // and '"'
    return (special & kHighest) == 0;
}

std::string_view entity(char32_t c)
{
    switch (c)
    {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

} // namespace

void appendEscaped(std::string& out, std::string_view text)
{
    std::size_t run = 0; // start of what can be copied as it stands
    for (std::size_t at = 0; at < text.size();)
    {
        if (text.size() - at >= sizeof(std::uint64_t) && arePlain(text.data() + at))
        {
            at += sizeof(std::uint64_t);
            continue;
        }
        if (kPlain[static_cast<unsigned char>(text[at])])
        {
            ++at;
            continue;
        }
        const std::size_t start = at;
        const char32_t c = decodeUtf8(text, at);
        std::string_view instead = entity(c);
        if (instead.empty() && !isXmlCharacter(c))
            instead = kReplacement;
        if (instead.empty())
            continue;
        out.append(text, run, start - run);
        out += instead;
        run = at;
    }
    out.append(text, run, text.size() - run);
}

XmlWriter& XmlWriter::open(std::string_view tag)
{
    _out += '<';
    _out += tag;
    return *this;
}

XmlWriter& XmlWriter::attribute(std::string_view name, std::string_view value)
{
    _out += ' ';
    _out += name;
    _out += "=\"";
    appendEscaped(_out, value);
    _out += '"';
    return *this;
}

void XmlWriter::close(std::string_view tag)
{
    _out += "</";
    _out += tag;
    _out += '>';
}

void XmlWriter::element(std::string_view tag, std::string_view content)
{
    start(tag);
    text(content);
    close(tag);
}

} // namespace cimxml
