// The clock and the short pause that providers use.
#ifndef CIMPLE_TIME_H
#define CIMPLE_TIME_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

struct CIMPLE_CIMPLE_LINKAGE Time
{
    static constexpr uint64 USEC = 1;
    static constexpr uint64 MSEC = 1000;
    static constexpr uint64 SEC = 1000000;

    static uint64 now();                    // microseconds since the POSIX epoch
    static void sleep(uint64 timeout_usec); // may return early when a signal arrives
};

CIMPLE_NAMESPACE_END

#endif
