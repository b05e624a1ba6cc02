// A clock for the map registry that stands still until a test moves it.
#ifndef TESTS_SUPPORT_MANUAL_CLOCK_H
#define TESTS_SUPPORT_MANUAL_CLOCK_H

#include "support/VRAX_Maps.h"

#include <cstdint>
#include <mutex>

// In force while the object lives; one at a time.
class Manual_Clock
{
  public:
    Manual_Clock() { cimple::VRAX_Maps::getInstance()->useClock(read); }
    ~Manual_Clock() { cimple::VRAX_Maps::getInstance()->useClock(nullptr); }
    Manual_Clock(const Manual_Clock&) = delete;
    Manual_Clock& operator=(const Manual_Clock&) = delete;

    static void advance(std::uint64_t milliseconds)
    {
        const std::lock_guard<std::mutex> guard(_lock);
        _now += milliseconds;
    }
    // Moves just far enough for everything loaded until now to be stale.
    static void outlive() { advance(cimple::kFreshnessMilliseconds); }

  private:
    static std::uint64_t read()
    {
        const std::lock_guard<std::mutex> guard(_lock);
        return _now;
    }
    inline static std::mutex _lock;
    inline static std::uint64_t _now = 0;
};

#endif
