// Model time: the process's monotonic clock, or a clock that a test moves.
#ifndef SIMULATOR_ENGINE_MODELCLOCK_H
#define SIMULATOR_ENGINE_MODELCLOCK_H

#include <chrono>
#include <cstdint>

namespace simulator
{

// Milliseconds since start(); never runs backwards between two starts. Read and changed under the engine's
// model lock.
class ModelClock
{
  public:
    // Begins again at `milliseconds`; with `manual` time stands still until advance().
    void start(std::uint64_t milliseconds, bool manual)
    {
        _start = std::chrono::steady_clock::now();
        _manual = manual;
        _offset = milliseconds;
    }

    void advance(std::uint64_t milliseconds) { _offset += milliseconds; }

    std::uint64_t now() const
    {
        if (_manual)
            return _offset;
        const auto elapsed = std::chrono::steady_clock::now() - _start;
        return _offset + static_cast<std::uint64_t>(
                             std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
    }

  private:
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
    std::uint64_t _offset = 0;
    bool _manual = false;
};

} // namespace simulator

#endif
