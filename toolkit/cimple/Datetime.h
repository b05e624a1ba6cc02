// The CIM datetime type: a point in time or a length of time (DSP0004, datetime type).
#ifndef CIMPLE_DATETIME_H
#define CIMPLE_DATETIME_H

#include <cimple/String.h>

CIMPLE_NAMESPACE_BEGIN

// Copies share one immutable representation; changing an object leaves its copies alone.
//
// A timestamp keeps the fields of its text (yyyymmddhhmmss.mmmmmmsutc) and usec(), the microseconds since the
// POSIX epoch at which a clock on the wall of this process showed those fields; the UTC offset is kept as
// given and is not applied. So text reads back unchanged in any time zone, and usec() is true UTC time only
// when the offset is that of the process. An interval (ddddddddhhmmss.mmmmmm:000) keeps its length in
// microseconds; its offset is 0.
class CIMPLE_CIMPLE_LINKAGE Datetime
{
  public:
    static constexpr uint64 USEC = 1;
    static constexpr uint64 MSEC = 1000 * USEC;
    static constexpr uint64 SEC = 1000 * MSEC;
    static constexpr uint64 MIN = 60 * SEC;
    static constexpr uint64 HOUR = 60 * MIN;
    static constexpr uint64 DAY = 24 * HOUR;

    enum
    {
        BUFFER_SIZE = 32
    };

    Datetime() : _rep(nullptr) {} // interval of length zero
    Datetime(const Datetime& x);
    Datetime(Datetime&& x) noexcept : _rep(x._rep) { x._rep = nullptr; }
    Datetime(uint64 usec, sint32 offset); // timestamp; offset in minutes
    Datetime(uint64 usec);                // interval
    explicit Datetime(const char* str);   // the epoch as a timestamp if the text is invalid
    ~Datetime();
    Datetime& operator=(const Datetime& x);
    Datetime& operator=(Datetime&& x) noexcept;

    void set(uint64 usec, sint32 offset); // becomes a timestamp
    void set(uint64 usec);                // becomes an interval

    // From 25 characters of either form, without wildcards. False: invalid, object unchanged.
    bool set(const char* str);

    void clear();

    void
    get_interval(uint32& days, uint32& hours, uint32& minutes, uint32& seconds, uint32& microseconds) const;
    void set_interval(uint32 days, uint32 hours, uint32 minutes, uint32 seconds, uint32 microseconds);
    void get_timestamp(uint32& year,
                       uint32& month,
                       uint32& day,
                       uint32& hours,
                       uint32& minutes,
                       uint32& seconds,
                       uint32& microseconds,
                       sint32& utc) const;
    void set_timestamp(uint32 year,
                       uint32 month,
                       uint32 day,
                       uint32 hours,
                       uint32 minutes,
                       uint32 seconds,
                       uint32 microseconds,
                       sint32 utc);

    bool is_interval() const { return !is_timestamp(); }
    bool is_timestamp() const;

    uint64 usec() const;
    void usec(uint64 x); // kind and offset stay
    sint32 offset() const;
    void offset(sint32 x); // no effect on an interval

    // The 25-character text, or with prettify "yyyy/mm/dd hh:mm:ss.mmmmmm+utc" / "dddddddd hh mm
    // ss.mmmmmm:000".
    void ascii(char buffer[BUFFER_SIZE], bool prettify = false) const;
    String ascii(bool prettify = false) const;
    void print(FILE* os = stdout, bool prettify = false) const; // with a newline

    // The present as a timestamp of local wall-clock time with the local offset from UTC.
    static Datetime now();

  private:
    struct Rep;

    void assign(Rep* rep);

    Rep* _rep; // null for the interval of length zero
};

static_assert(sizeof(Datetime) == sizeof(void*), "instances hold datetimes as one pointer");

// Same kind, microseconds and offset.
bool operator==(const Datetime& x, const Datetime& y);

CIMPLE_NAMESPACE_END

#endif
