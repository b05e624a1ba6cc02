// Small conversions of switch texts.
#include "switchaccess/string_helpers.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace cimple
{

int strToInt(const char* text)
{
    const float hundredths = std::strtof(text, nullptr) * 100.0F;
    if (std::isnan(hundredths))
        return 0;
    // The limits themselves are not exact in a float; the nearest floats inside are what still converts.
    constexpr float kLowest = -2147483648.0F;
    constexpr float kBeyond = 2147483648.0F;
    if (hundredths >= kBeyond)
        return std::numeric_limits<int>::max();
    if (hundredths < kLowest)
        return std::numeric_limits<int>::min();
    return static_cast<int>(std::lrintf(hundredths));
}

char* strToUpper(char* text)
{
    for (char* p = text; *p != '\0'; ++p)
        *p = static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
    return text;
}

char* convertToUpper(char* text)
{
    return strToUpper(text);
}

std::string upperCased(const char* text)
{
    std::string result(text);
    strToUpper(result.data());
    return result;
}

int IS_HEX_STR(const char* text)
{
    return text[std::strspn(text, "0123456789ABCDEFabcdef")] == '\0' ? 1 : 0;
}

} // namespace cimple
