// A CIM date-time: 25 characters that name a point in time or an interval.
#ifndef AGENT_CIM_CIMDATETIME_H
#define AGENT_CIM_CIMDATETIME_H

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace cimd
{

// DSP0004 datetime: "yyyymmddhhmmss.mmmmmmsutc" (s is + or -, utc in minutes) or "ddddddddhhmmss.mmmmmm:000".
// Fields may be blanked out from the least significant end with '*', in whole fields and, within the
// microseconds, in single digits. Always holds a valid text.
class CimDateTime
{
  public:
    static constexpr std::size_t kLength = 25;

    // Nothing if the text is not a valid date-time.
    static std::optional<CimDateTime> parse(std::string_view text);

    // A point in time given in microseconds since 1970-01-01 00:00 UTC; nothing beyond the year 9999.
    static std::optional<CimDateTime> fromMicroseconds(std::uint64_t microseconds);
    // A length of time in microseconds; nothing beyond 99,999,999 days.
    static std::optional<CimDateTime> intervalFromMicroseconds(std::uint64_t microseconds);
    static CimDateTime now();

    bool isInterval() const { return _text[21] == ':'; }
    std::string_view text() const { return {_text.data(), _text.size()}; }

    // Microseconds since 1970-01-01 00:00 UTC, or of the interval; blanked fields count as their least value.
    // A point in time before 1970 gives 0.
    std::uint64_t microseconds() const;

    friend bool operator==(const CimDateTime& left, const CimDateTime& right)
    {
        return left._text == right._text;
    }
    friend bool operator!=(const CimDateTime& left, const CimDateTime& right) { return !(left == right); }

  private:
    CimDateTime() = default;

    std::array<char, kLength> _text{};
};

} // namespace cimd

#endif
