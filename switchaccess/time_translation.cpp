// Conversion between the switch's time stamps and CIM date-times.
#include "switchaccess/time_translation.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace cimple
{

namespace
{

// "MMDDhhmmYYYY"
constexpr std::size_t kTextLength = 12;

// "+mmm"
constexpr std::size_t kOffsetLength = 4;

// The number in `width` characters of a text; 0 when there is none.
int field(const char* text, std::size_t width)
{
    char digits[5] = {};
    std::memcpy(digits, text, width);
    return static_cast<int>(std::strtol(digits, nullptr, 10));
}

std::tm localFields(std::time_t t)
{
    tzset(); // localtime_r alone need not notice a change of the zone
    std::tm fields{};
    localtime_r(&t, &fields);
    return fields;
}

// A moment as wide as the C library's; `long` ends in 2038 where it has 32 bits.
String offsetAt(std::time_t t)
{
    const std::tm fields = localFields(t);
    long west = timezone / 60;
    if (fields.tm_isdst > 0)
        west -= 60;
    const char sign = west > 0 ? '-' : '+';
    char text[32];
    std::snprintf(text, sizeof(text), "%c%3.3ld", sign, west > 0 ? west : -west);
    return String(text, kOffsetLength);
}

} // namespace

Datetime smlTimeToCIMDatetime(const String& text)
{
    Datetime datetime;
    if (text.size() < kTextLength)
        return datetime;

    std::tm fields{};
    fields.tm_mon = field(text.c_str(), 2) - 1;
    fields.tm_mday = field(text.c_str() + 2, 2);
    fields.tm_hour = field(text.c_str() + 4, 2);
    fields.tm_min = field(text.c_str() + 6, 2);
    fields.tm_year = field(text.c_str() + 8, 4) - 1900;
    fields.tm_isdst = -1; // the zone knows
    const std::time_t t = std::mktime(&fields);

    char normalised[64];
    std::snprintf(normalised,
                  sizeof(normalised),
                  "%04d%02d%02d%02d%02d%02d.%06d",
                  fields.tm_year + 1900,
                  fields.tm_mon + 1,
                  fields.tm_mday,
                  fields.tm_hour,
                  fields.tm_min,
                  fields.tm_sec,
                  0);
    String withOffset(normalised);
    withOffset.append(offsetAt(t));
    return Datetime(withOffset.c_str());
}

String CIMDatetimeTosmlTime(const Datetime& datetime)
{
    const auto seconds = static_cast<sint32>(datetime.usec() / Datetime::SEC);
    const std::tm fields = localFields(seconds);
    char text[64];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-y2k" // the century stands before the two digits
    std::strftime(text, sizeof(text), "%m%d%h%M%C%y", &fields);
#pragma GCC diagnostic pop
    return text;
}

String calcLocalUTCOffset(long t)
{
    return offsetAt(t);
}

String localWallClock(std::int64_t secondsSinceEpoch)
{
    const std::tm fields = localFields(static_cast<std::time_t>(secondsSinceEpoch));
    char text[Datetime::BUFFER_SIZE] = "";
    std::strftime(text, sizeof(text), "%Y%m%d%H%M%S.000000+000", &fields);
    return String(text);
}

} // namespace cimple
