// Moments as texts.
#include "simulator/model/switch_time.h"

#include "simulator/model/hex.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iterator>

namespace simulator
{
namespace
{

constexpr std::string_view kMonths[] = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr std::size_t kDigitsOnly = 12;
constexpr std::size_t kWithMonthName = 13;

// Takes a number off the front of the text; false when there is none of this width.
bool takeNumber(std::string_view& text, std::size_t width, int& number)
{
    const bool taken = text.size() >= width && parseDecimal(text.substr(0, width), number);
    text.remove_prefix(std::min(width, text.size()));
    return taken;
}

// The moment that the fields of local time name; nothing when there is no such day or minute.
std::optional<std::int64_t> momentOf(const std::tm& fields)
{
    std::tm real = fields;
    real.tm_isdst = -1;
    const std::time_t moment = std::mktime(&real);
    const bool exists = moment != -1 && real.tm_mday == fields.tm_mday && real.tm_mon == fields.tm_mon &&
                        real.tm_min == fields.tm_min;
    return exists ? std::optional<std::int64_t>(moment) : std::nullopt;
}

// The second of that minute which is nearest to `now`.
std::optional<std::int64_t> nearestSecond(const std::tm& minute, std::int64_t now)
{
    const auto start = momentOf(minute);
    return start ? std::optional<std::int64_t>(std::clamp(now, *start, *start + 59)) : std::nullopt;
}

} // namespace

std::string switchTimeText(std::int64_t moment)
{
    const auto seconds = static_cast<std::time_t>(moment);
    ::tzset(); // localtime_r alone need not notice a change of the zone
    std::tm fields{};
    localtime_r(&seconds, &fields);
    char text[32];
    return std::string(text, std::strftime(text, sizeof text, "%m%d%H%M%Y", &fields));
}

std::optional<std::int64_t> momentOfSwitchText(std::string_view text, std::int64_t now)
{
    if (text.size() != kDigitsOnly && text.size() != kWithMonthName)
        return std::nullopt;
    const bool hasHour = text.size() == kDigitsOnly;
    std::tm fields{};
    int month = 0;
    bool read = takeNumber(text, 2, month) && takeNumber(text, 2, fields.tm_mday) && month >= 1 &&
                month <= 12 && fields.tm_mday >= 1;
    fields.tm_mon = month - 1;
    if (read && hasHour)
    {
        read = takeNumber(text, 2, fields.tm_hour) && fields.tm_hour < 24;
    }
    else if (read)
    {
        read = text.substr(0, 3) == kMonths[fields.tm_mon];
        text.remove_prefix(3);
    }
    read = read && takeNumber(text, 2, fields.tm_min) && fields.tm_min < 60 &&
           takeNumber(text, 4, fields.tm_year);
    fields.tm_year -= 1900;
    if (!read || hasHour)
        return read ? nearestSecond(fields, now) : std::nullopt;
    std::optional<std::int64_t> best;
    for (fields.tm_hour = 0; fields.tm_hour < 24; ++fields.tm_hour)
    {
        const auto candidate = nearestSecond(fields, now);
        if (candidate && (!best || std::abs(*candidate - now) < std::abs(*best - now)))
            best = candidate;
    }
    return best;
}

std::string isoText(std::int64_t moment)
{
    const auto seconds = static_cast<std::time_t>(moment);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    char text[32];
    return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields));
}

std::optional<std::int64_t> momentOfIsoText(const std::string& text)
{
    std::tm fields{};
    const char* end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &fields);
    if (end == nullptr || *end != '\0')
        return std::nullopt;
    const std::int64_t moment = ::timegm(&fields);
    return isoText(moment) == text ? std::optional<std::int64_t>(moment) : std::nullopt;
}

} // namespace simulator
