// Checking and computing with the 25 characters of a CIM date-time.
#include "agent/cim/CimDateTime.h"

#include <algorithm>
#include <chrono>

namespace cimd
{
namespace
{

constexpr std::uint64_t kSecond = 1'000'000;
constexpr std::uint64_t kMinute = 60 * kSecond;
constexpr std::uint64_t kHour = 60 * kMinute;
constexpr std::uint64_t kDay = 24 * kHour;
constexpr std::uint64_t kMaxIntervalDays = 99'999'999;
constexpr std::size_t kPoint = 14;        // '.'
constexpr std::size_t kMicroseconds = 15; // six digits
constexpr std::size_t kSign = 21;         // '+', '-' or ':'
constexpr std::size_t kOffset = 22;       // three digits: minutes from UTC, 000 for an interval
constexpr unsigned kMaxYear = 9999;

struct Field
{
    std::size_t start;
    std::size_t length;
    unsigned least;
    unsigned greatest;
};

// Most significant first. A minute may have a 61st second.
constexpr std::array kPointFields{Field{0, 4, 0, kMaxYear},
                                  Field{4, 2, 1, 12},
                                  Field{6, 2, 1, 31},
                                  Field{8, 2, 0, 23},
                                  Field{10, 2, 0, 59},
                                  Field{12, 2, 0, 60}};
constexpr std::array kIntervalFields{
    Field{0, 8, 0, kMaxIntervalDays}, Field{8, 2, 0, 23}, Field{10, 2, 0, 59}, Field{12, 2, 0, 59}};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c == '*'; });
}

bool isNumber(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), isDigit);
}

// Blanked digits count as `least`.
unsigned fieldValue(std::string_view text, const Field& field)
{
    const std::string_view digits = text.substr(field.start, field.length);
    if (isBlank(digits))
        return field.least;
    unsigned value = 0;
    for (const char c : digits)
        value = value * 10 + static_cast<unsigned>(c - '0');
    return value;
}

template <std::size_t N>
bool fieldsValid(std::string_view text, const std::array<Field, N>& fields)
{
    bool blanked = false;
    for (const Field& field : fields)
    {
        const std::string_view digits = text.substr(field.start, field.length);
        if (isBlank(digits))
        {
            blanked = true;
            continue;
        }
        if (blanked || !isNumber(digits))
            return false;
        const unsigned value = fieldValue(text, field);
        if (value < field.least || value > field.greatest)
            return false;
    }
    const std::string_view fraction = text.substr(kMicroseconds, kSign - kMicroseconds);
    const std::size_t digits = std::min(fraction.find('*'), fraction.size());
    return isNumber(fraction.substr(0, digits)) && isBlank(fraction.substr(digits)) &&
           !(blanked && digits != 0);
}

bool isLeapYear(unsigned year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

unsigned daysInMonth(unsigned year, unsigned month)
{
    constexpr std::array<unsigned, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

// Days from 0000-01-01 to the first day of the year, in the proleptic Gregorian calendar.
constexpr std::int64_t daysBeforeYear(unsigned year)
{
    if (year == 0)
        return 0;
    const auto before = static_cast<std::int64_t>(year) - 1;
    return 366 + before * 365 + before / 4 - before / 100 + before / 400;
}

constexpr std::int64_t kDaysBefore1970 = daysBeforeYear(1970);

void write(char* out, std::size_t length, std::uint64_t value)
{
    for (std::size_t i = length; i > 0; --i, value /= 10)
        out[i - 1] = static_cast<char>('0' + value % 10);
}

unsigned fraction(std::string_view text)
{
    unsigned value = 0;
    for (const char c : text.substr(kMicroseconds, kSign - kMicroseconds))
        value = value * 10 + (c == '*' ? 0U : static_cast<unsigned>(c - '0'));
    return value;
}

void writeTimeOfDay(char* text, std::uint64_t microseconds)
{
    write(text + 8, 2, microseconds / kHour);
    write(text + 10, 2, microseconds % kHour / kMinute);
    write(text + 12, 2, microseconds % kMinute / kSecond);
    text[kPoint] = '.';
    write(text + kMicroseconds, 6, microseconds % kSecond);
}

} // namespace

std::optional<CimDateTime> CimDateTime::parse(std::string_view text)
{
    if (text.size() != kLength || text[kPoint] != '.')
        return std::nullopt;
    const std::string_view offset = text.substr(kOffset);
    switch (text[kSign])
    {
    case ':':
        if (offset != "000" || !fieldsValid(text, kIntervalFields))
            return std::nullopt;
        break;
    case '+':
    case '-':
        if (!(isNumber(offset) || isBlank(offset)) || !fieldsValid(text, kPointFields))
            return std::nullopt;
        if (fieldValue(text, kPointFields[2]) >
            daysInMonth(fieldValue(text, kPointFields[0]), fieldValue(text, kPointFields[1])))
            return std::nullopt;
        break;
    default:
        return std::nullopt;
    }
    CimDateTime result;
    std::copy(text.begin(), text.end(), result._text.begin());
    return result;
}

std::optional<CimDateTime> CimDateTime::fromMicroseconds(std::uint64_t microseconds)
{
    const auto days = static_cast<std::int64_t>(microseconds / kDay) + kDaysBefore1970;
    // The quotient is never too small and at most one year too large within the range of the calendar.
    const std::int64_t estimate = days / 365;
    if (estimate > kMaxYear + 30)
        return std::nullopt;
    auto year = static_cast<unsigned>(estimate);
    while (daysBeforeYear(year) > days)
        --year;
    if (year > kMaxYear)
        return std::nullopt;
    auto dayOfYear = static_cast<unsigned>(days - daysBeforeYear(year));
    unsigned month = 1;
    for (; dayOfYear >= daysInMonth(year, month); ++month)
        dayOfYear -= daysInMonth(year, month);

    CimDateTime result;
    char* text = result._text.data();
    write(text, 4, year);
    write(text + 4, 2, month);
    write(text + 6, 2, dayOfYear + 1);
    writeTimeOfDay(text, microseconds % kDay);
    std::copy_n("+000", 4, text + kSign);
    return result;
}

std::optional<CimDateTime> CimDateTime::intervalFromMicroseconds(std::uint64_t microseconds)
{
    const std::uint64_t days = microseconds / kDay;
    if (days > kMaxIntervalDays)
        return std::nullopt;
    CimDateTime result;
    char* text = result._text.data();
    write(text, 8, days);
    writeTimeOfDay(text, microseconds % kDay);
    std::copy_n(":000", 4, text + kSign);
    return result;
}

CimDateTime CimDateTime::now()
{
    using namespace std::chrono;
    const auto elapsed =
        duration_cast<std::chrono::microseconds>(system_clock::now().time_since_epoch()).count();
    return fromMicroseconds(static_cast<std::uint64_t>(std::max<std::int64_t>(elapsed, 0))).value();
}

std::uint64_t CimDateTime::microseconds() const
{
    const std::string_view all = text();
    if (isInterval())
    {
        const auto& [days, hours, minutes, seconds] = kIntervalFields;
        return fieldValue(all, days) * kDay + fieldValue(all, hours) * kHour +
               fieldValue(all, minutes) * kMinute + fieldValue(all, seconds) * kSecond + fraction(all);
    }
    const auto& [year, month, day, hours, minutes, seconds] = kPointFields;
    const unsigned y = fieldValue(all, year);
    std::int64_t days = daysBeforeYear(y) - kDaysBefore1970 + fieldValue(all, day) - 1;
    for (unsigned m = 1; m < fieldValue(all, month); ++m)
        days += daysInMonth(y, m);
    std::int64_t offsetMinutes = fieldValue(all, {kOffset, 3, 0, 999});
    if (all[kSign] == '-')
        offsetMinutes = -offsetMinutes;
    const std::int64_t wholeMinutes =
        days * 24 * 60 + fieldValue(all, hours) * 60 + fieldValue(all, minutes) - offsetMinutes;
    if (wholeMinutes < 0)
        return 0;
    return static_cast<std::uint64_t>(wholeMinutes) * kMinute + fieldValue(all, seconds) * kSecond +
           fraction(all);
}

} // namespace cimd
