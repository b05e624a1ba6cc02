// The time of day that belongs to model time.
#ifndef SIMULATOR_MODEL_WALLCLOCK_H
#define SIMULATOR_MODEL_WALLCLOCK_H

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace simulator
{

// The machine's time at the start, and from there on as model time goes.
class WallClock
{
  public:
    // `now` is the present model time in milliseconds.
    explicit WallClock(std::uint64_t now)
        : _zero(std::chrono::duration_cast<std::chrono::microseconds>(
                    std::chrono::system_clock::now().time_since_epoch())
                    .count() -
                static_cast<std::int64_t>(now) * kMicroseconds)
    {
    }

    // Since the epoch.
    std::int64_t microseconds(std::uint64_t now) const
    {
        return _zero + static_cast<std::int64_t>(now) * kMicroseconds;
    }
    std::int64_t seconds(std::uint64_t now) const { return microseconds(now) / kSecond; }

    // The first model time at which seconds() tells this; 0 when it is before the model's time.
    std::uint64_t modelTime(std::int64_t seconds) const
    {
        const std::int64_t after = seconds * kSecond - _zero;
        return static_cast<std::uint64_t>(
            std::max<std::int64_t>(0, (after + kMicroseconds - 1) / kMicroseconds));
    }

  private:
    static constexpr std::int64_t kMicroseconds = 1000; // of a millisecond
    static constexpr std::int64_t kSecond = 1000000;

    std::int64_t _zero; // the time of day at model time 0
};

} // namespace simulator

#endif
