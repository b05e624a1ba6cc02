// Conversion between text and numbers, booleans and octet strings.
#include <charconv>
#include <cimple/Strings.h>
#include <cimple/boolean.h>
#include <cimple/integer.h>
#include <cimple/octets.h>
#include <cimple/real.h>
#include <vector>

CIMPLE_NAMESPACE_BEGIN

namespace
{
template <class T>
int parse_number(const char* str, T& x)
{
    const char* const end = str + strlen(str);
    if (*str == '+' && str[1] != '-')
        str++;
    T value = 0;
    const std::from_chars_result result = std::from_chars(str, end, value);
    if (result.ec != std::errc() || result.ptr != end)
        return -1;
    x = value;
    return 0;
}

template <class T>
const char* format_integer(char buffer[22], T x, size_t& size)
{
    char* const end = std::to_chars(buffer, buffer + 21, x).ptr;
    *end = '\0';
    size = static_cast<size_t>(end - buffer);
    return buffer;
}

const size_t kOctetHead = 10; // "0x" and eight digits
const uint32 kLengthOctets = 4;

// The octets of a valid octet string.
bool decode_octets(const String& text, std::vector<unsigned char>& octets)
{
    const char* const str = text.c_str();
    const char* const end = str + text.size();
    if (text.size() < kOctetHead || str[0] != '0' || (str[1] != 'x' && str[1] != 'X'))
        return false;
    uint32 length = 0;
    if (std::from_chars(str + 2, str + kOctetHead, length, 16).ptr != str + kOctetHead)
        return false;
    if (length < kLengthOctets || (text.size() - kOctetHead) % 2 != 0 ||
        (text.size() - kOctetHead) / 2 != length - kLengthOctets)
        return false;
    octets.reserve(length - kLengthOctets);
    for (const char* p = str + kOctetHead; p != end; p += 2)
    {
        unsigned char octet = 0;
        if (std::from_chars(p, p + 2, octet, 16).ptr != p + 2)
            return false;
        octets.push_back(octet);
    }
    return true;
}
} // namespace

#define CIMPLE_DEFINE_INTEGER(T)                                                                             \
    int str_to_##T(const char* str, T& x)                                                                    \
    {                                                                                                        \
        return parse_number(str, x);                                                                         \
    }                                                                                                        \
    const char* T##_to_str(char buffer[22], T x, size_t& size)                                               \
    {                                                                                                        \
        return format_integer(buffer, x, size);                                                              \
    }
CIMPLE_DEFINE_INTEGER(uint8)
CIMPLE_DEFINE_INTEGER(sint8)
CIMPLE_DEFINE_INTEGER(uint16)
CIMPLE_DEFINE_INTEGER(sint16)
CIMPLE_DEFINE_INTEGER(uint32)
CIMPLE_DEFINE_INTEGER(sint32)
CIMPLE_DEFINE_INTEGER(uint64)
CIMPLE_DEFINE_INTEGER(sint64)
#undef CIMPLE_DEFINE_INTEGER

int str_to_real32(const char* str, real32& x)
{
    return parse_number(str, x);
}

int str_to_real64(const char* str, real64& x)
{
    return parse_number(str, x);
}

int str_to_boolean(const char* str, boolean& x)
{
    if (!eqi(str, "true") && !eqi(str, "false"))
        return -1;
    x = eqi(str, "true");
    return 0;
}

String octets_to_string(const unsigned char* data, uint32 size)
{
    char buffer[kOctetHead + 1];
    snprintf(buffer, sizeof buffer, "0x%08X", size + kLengthOctets);
    String text;
    text.reserve(kOctetHead + size_t(2) * size);
    text.append(buffer);
    for (uint32 i = 0; i < size; i++)
    {
        snprintf(buffer, sizeof buffer, "%02X", static_cast<unsigned>(data[i]));
        text.append(buffer, 2);
    }
    return text;
}

ssize_t string_to_octets(const String& text, unsigned char* data, uint32 size)
{
    std::vector<unsigned char> octets;
    if (!decode_octets(text, octets))
        return -1;
    std::copy_n(octets.begin(), std::min<size_t>(size, octets.size()), data);
    return static_cast<ssize_t>(octets.size());
}

int string_to_octets(const String& text, Array<unsigned char>& array)
{
    std::vector<unsigned char> octets;
    if (!decode_octets(text, octets))
        return -1;
    array.assign(octets.data(), octets.size());
    return 0;
}

CIMPLE_NAMESPACE_END
