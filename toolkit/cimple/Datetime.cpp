// Datetimes: their shared representation, their text forms and the calendar behind them.
#include <atomic>
#include <cimple/Datetime.h>
#include <cimple/Time.h>
#include <ctime>

CIMPLE_NAMESPACE_BEGIN

static_assert(sizeof(time_t) == 8, "timestamps reach beyond the range of 32-bit seconds");

struct Datetime::Rep
{
    std::atomic<int> refs;
    bool is_timestamp;
    uint64 usec;
    sint32 offset;
    sint64 wall_usec; // timestamps: the fields, as microseconds since the fields 1970/01/01 00:00:00
};

namespace
{
const size_t kTextLength = 25;
const size_t kSignIndex = 21;
const sint64 kSec = static_cast<sint64>(Datetime::SEC);

time_t whole_seconds(sint64 usec)
{
    const sint64 remainder = usec % kSec;
    return static_cast<time_t>((remainder < 0 ? usec - kSec : usec) / kSec);
}

uint32 fraction(sint64 usec)
{
    const sint64 remainder = usec % kSec;
    return static_cast<uint32>(remainder < 0 ? remainder + kSec : remainder);
}

sint64 make_usec(time_t seconds, uint32 microseconds)
{
    return static_cast<sint64>(seconds) * kSec + microseconds;
}

// What a clock on the wall of this process shows at a time since the epoch.
sint64 wall_from_epoch(sint64 usec)
{
    const time_t seconds = whole_seconds(usec);
    struct tm fields = {};
    localtime_r(&seconds, &fields);
    return usec + static_cast<sint64>(fields.tm_gmtoff) * kSec;
}

// When it shows that. Of a time that is shown twice or never when the clock is changed, one that is near.
sint64 epoch_from_wall(sint64 wall_usec)
{
    const time_t seconds = whole_seconds(wall_usec);
    struct tm fields = {};
    gmtime_r(&seconds, &fields);
    fields.tm_isdst = -1;
    return make_usec(mktime(&fields), fraction(wall_usec));
}

sint64 wall_from_fields(
    uint32 year, uint32 month, uint32 day, uint32 hours, uint32 minutes, uint32 seconds, uint32 usec)
{
    struct tm fields = {};
    fields.tm_year = static_cast<int>(year) - 1900;
    fields.tm_mon = static_cast<int>(month) - 1;
    fields.tm_mday = static_cast<int>(day);
    fields.tm_hour = static_cast<int>(hours);
    fields.tm_min = static_cast<int>(minutes);
    fields.tm_sec = static_cast<int>(seconds);
    return make_usec(timegm(&fields), usec);
}

// No calendar has the date 0000/00/00. Its fields are kept as those of the day to which it leads when the
// calendar is followed back; no text gives that day otherwise, as its year has no four digits.
bool is_date_of_zeros(const struct tm& fields)
{
    return fields.tm_year == -1 - 1900 && fields.tm_mon == 10 && fields.tm_mday == 30;
}

uint64 interval_usec(uint64 days, uint64 hours, uint64 minutes, uint64 seconds, uint64 microseconds)
{
    return days * Datetime::DAY + hours * Datetime::HOUR + minutes * Datetime::MIN + seconds * Datetime::SEC +
           microseconds;
}

// Reads fields of decimal digits one after the other.
class Digits
{
  public:
    explicit Digits(const char* text) : _text(text) {}

    uint32 next(size_t n)
    {
        uint32 x = 0;
        for (; n > 0; n--, _text++)
        {
            if (*_text < '0' || *_text > '9')
            {
                _ok = false;
                return 0;
            }
            x = x * 10 + static_cast<uint32>(*_text - '0');
        }
        return x;
    }

    void skip(char c)
    {
        if (_ok && *_text++ != c)
            _ok = false;
    }

    bool ok() const { return _ok; }

  private:
    const char* _text;
    bool _ok = true;
};
} // namespace

Datetime::Datetime(const Datetime& x) : _rep(x._rep)
{
    if (_rep)
        _rep->refs.fetch_add(1, std::memory_order_relaxed);
}

Datetime::Datetime(uint64 usec, sint32 offset) : _rep(nullptr)
{
    set(usec, offset);
}

Datetime::Datetime(uint64 usec) : _rep(nullptr)
{
    set(usec);
}

Datetime::Datetime(const char* str) : _rep(nullptr)
{
    if (!set(str))
        set(0, 0);
}

Datetime::~Datetime()
{
    assign(nullptr);
}

Datetime& Datetime::operator=(const Datetime& x)
{
    Datetime copy(x);
    std::swap(_rep, copy._rep);
    return *this;
}

Datetime& Datetime::operator=(Datetime&& x) noexcept
{
    std::swap(_rep, x._rep);
    return *this;
}

void Datetime::assign(Rep* rep)
{
    if (_rep && _rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete _rep;
    _rep = rep;
}

void Datetime::set(uint64 usec, sint32 offset)
{
    assign(new Rep{{1}, true, usec, offset, wall_from_epoch(static_cast<sint64>(usec))});
}

void Datetime::set(uint64 usec)
{
    assign(usec == 0 ? nullptr : new Rep{{1}, false, usec, 0, 0});
}

bool Datetime::set(const char* str)
{
    if (strnlen(str, kTextLength + 1) != kTextLength)
        return false;

    const char sign = str[kSignIndex];
    Digits digits(str);
    const uint32 date[] = {digits.next(4), digits.next(2), digits.next(2)};
    const uint32 hours = digits.next(2);
    const uint32 minutes = digits.next(2);
    const uint32 seconds = digits.next(2);
    digits.skip('.');
    const uint32 microseconds = digits.next(6);
    digits.skip(sign);
    const uint32 utc = digits.next(3);
    if (!digits.ok())
        return false;

    if (sign == ':')
    {
        if (utc != 0)
            return false;
        set_interval(date[0] * 10000 + date[1] * 100 + date[2], hours, minutes, seconds, microseconds);
        return true;
    }
    if (sign != '+' && sign != '-')
        return false;
    const sint32 offset = static_cast<sint32>(utc);
    set_timestamp(
        date[0], date[1], date[2], hours, minutes, seconds, microseconds, sign == '-' ? -offset : offset);
    return true;
}

void Datetime::clear()
{
    assign(nullptr);
}

void Datetime::get_interval(
    uint32& days, uint32& hours, uint32& minutes, uint32& seconds, uint32& microseconds) const
{
    const uint64 x = usec();
    days = static_cast<uint32>(x / DAY);
    hours = static_cast<uint32>(x / HOUR % 24);
    minutes = static_cast<uint32>(x / MIN % 60);
    seconds = static_cast<uint32>(x / SEC % 60);
    microseconds = static_cast<uint32>(x % SEC);
}

void Datetime::set_interval(uint32 days, uint32 hours, uint32 minutes, uint32 seconds, uint32 microseconds)
{
    set(interval_usec(days, hours, minutes, seconds, microseconds));
}

void Datetime::get_timestamp(uint32& year,
                             uint32& month,
                             uint32& day,
                             uint32& hours,
                             uint32& minutes,
                             uint32& seconds,
                             uint32& microseconds,
                             sint32& utc) const
{
    const sint64 wall = is_timestamp() ? _rep->wall_usec : wall_from_epoch(static_cast<sint64>(usec()));
    const time_t wall_seconds = whole_seconds(wall);
    struct tm fields = {};
    gmtime_r(&wall_seconds, &fields);
    const bool zeros = is_date_of_zeros(fields);
    year = zeros ? 0 : static_cast<uint32>(fields.tm_year + 1900);
    month = zeros ? 0 : static_cast<uint32>(fields.tm_mon + 1);
    day = zeros ? 0 : static_cast<uint32>(fields.tm_mday);
    hours = static_cast<uint32>(fields.tm_hour);
    minutes = static_cast<uint32>(fields.tm_min);
    seconds = static_cast<uint32>(fields.tm_sec);
    microseconds = fraction(wall);
    utc = offset();
}

void Datetime::set_timestamp(uint32 year,
                             uint32 month,
                             uint32 day,
                             uint32 hours,
                             uint32 minutes,
                             uint32 seconds,
                             uint32 microseconds,
                             sint32 utc)
{
    const sint64 wall = wall_from_fields(year, month, day, hours, minutes, seconds, microseconds);
    assign(new Rep{{1}, true, static_cast<uint64>(epoch_from_wall(wall)), utc, wall});
}

bool Datetime::is_timestamp() const
{
    return _rep && _rep->is_timestamp;
}

uint64 Datetime::usec() const
{
    return _rep ? _rep->usec : 0;
}

void Datetime::usec(uint64 x)
{
    if (is_timestamp())
        set(x, offset());
    else
        set(x);
}

sint32 Datetime::offset() const
{
    return _rep ? _rep->offset : 0;
}

void Datetime::offset(sint32 x)
{
    if (is_timestamp())
        assign(new Rep{{1}, true, _rep->usec, x, _rep->wall_usec});
}

void Datetime::ascii(char buffer[BUFFER_SIZE], bool prettify) const
{
    uint32 days, hours, minutes, seconds, microseconds;
    if (is_interval())
    {
        get_interval(days, hours, minutes, seconds, microseconds);
        snprintf(buffer,
                 BUFFER_SIZE,
                 prettify ? "%08u %02u %02u %02u.%06u:000" : "%08u%02u%02u%02u.%06u:000",
                 days % 100000000,
                 hours,
                 minutes,
                 seconds,
                 microseconds);
        return;
    }
    uint32 year, month;
    sint32 utc;
    get_timestamp(year, month, days, hours, minutes, seconds, microseconds, utc);
    snprintf(buffer,
             BUFFER_SIZE,
             prettify ? "%04u/%02u/%02u %02u:%02u:%02u.%06u%c%03d" : "%04u%02u%02u%02u%02u%02u.%06u%c%03d",
             year % 10000,
             month,
             days,
             hours,
             minutes,
             seconds,
             microseconds,
             utc < 0 ? '-' : '+',
             abs(utc) % 1000);
}

String Datetime::ascii(bool prettify) const
{
    char buffer[BUFFER_SIZE];
    ascii(buffer, prettify);
    return String(buffer);
}

void Datetime::print(FILE* os, bool prettify) const
{
    fprintf(os, "%s\n", ascii(prettify).c_str());
}

Datetime Datetime::now()
{
    const uint64 usec = Time::now();
    const time_t seconds = whole_seconds(static_cast<sint64>(usec));
    struct tm fields = {};
    localtime_r(&seconds, &fields);
    return Datetime(usec, static_cast<sint32>(fields.tm_gmtoff / 60));
}

bool operator==(const Datetime& x, const Datetime& y)
{
    return x.is_timestamp() == y.is_timestamp() && x.usec() == y.usec() && x.offset() == y.offset();
}

CIMPLE_NAMESPACE_END
