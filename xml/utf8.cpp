// Decoding and encoding of UTF-8.
#include "xml/utf8.h"

namespace cimxml
{

namespace
{

struct Form
{
    unsigned char mask; // bits that mark the form in the first byte
    unsigned char mark; // their value
    unsigned char tail; // continuation bytes that follow
    char32_t least;     // smallest character that needs the form
};

constexpr Form kForms[] = {
    {0x80, 0x00, 0, 0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};

} // namespace

char32_t decodeUtf8(std::string_view text, std::size_t& position)
{
    const auto first = static_cast<unsigned char>(text[position++]);
    for (const Form& form : kForms)
    {
        if ((first & form.mask) != form.mark)
            continue;
        char32_t character = first & static_cast<unsigned char>(~form.mask);
        if (text.size() - position < form.tail)
            return kNoCharacter;
        for (std::size_t i = 0; i < form.tail; ++i)
        {
            const auto next = static_cast<unsigned char>(text[position + i]);
            if ((next & 0xC0) != 0x80)
                return kNoCharacter;
            character = (character << 6) | (next & 0x3F);
        }
        if (character < form.least || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF))
            return kNoCharacter;
        position += form.tail;
        return character;
    }
    return kNoCharacter;
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto byte = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (c < 0x80)
        return byte(c);
    if (c < 0x800)
        byte(0xC0 | (c >> 6));
    else
    {
        if (c < 0x10000)
            byte(0xE0 | (c >> 12));
        else
        {
            byte(0xF0 | (c >> 18));
            byte(0x80 | ((c >> 12) & 0x3F));
        }
        byte(0x80 | ((c >> 6) & 0x3F));
    }
    byte(0x80 | (c & 0x3F));
}

bool isXmlCharacter(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

} // namespace cimxml
