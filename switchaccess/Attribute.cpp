// The conversions that attribute tables share.
#include "switchaccess/Attribute.h"

#include "switchaccess/string_helpers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace cimple
{

std::uint64_t hexadecimal(const char* text)
{
    return std::strtoull(text, nullptr, 16);
}

std::uint64_t decimal(const char* text)
{
    return std::strtoull(text, nullptr, 10);
}

uint16 decimal16(const char* text)
{
    return static_cast<uint16>(std::strtol(text, nullptr, 10));
}

uint32 decimal32(const char* text)
{
    constexpr std::uint64_t kLargest = std::numeric_limits<uint32>::max();
    return static_cast<uint32>(std::min(decimal(text), kLargest));
}

bool isTrue(const char* text)
{
    return std::strcmp(text, "True") == 0;
}

String inUpperCase(const char* text)
{
    return String(upperCased(text).c_str());
}

Array_String asOnlyElement(const char* text)
{
    return Array_String::make(text);
}

} // namespace cimple
