// The system clock.
#include <cimple/Time.h>
#include <ctime>

CIMPLE_NAMESPACE_BEGIN

uint64 Time::now()
{
    struct timespec ts = {};
    clock_gettime(CLOCK_REALTIME, &ts);
    return static_cast<uint64>(ts.tv_sec) * SEC + static_cast<uint64>(ts.tv_nsec) / 1000;
}

void Time::sleep(uint64 timeout_usec)
{
    struct timespec ts = {};
    ts.tv_sec = static_cast<time_t>(timeout_usec / SEC);
    ts.tv_nsec = static_cast<decltype(ts.tv_nsec)>(timeout_usec % SEC * 1000);
    nanosleep(&ts, nullptr);
}

CIMPLE_NAMESPACE_END
