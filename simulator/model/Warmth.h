// How much warmer than idle a switch is.
#ifndef SIMULATOR_MODEL_WARMTH_H
#define SIMULATOR_MODEL_WARMTH_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace simulator
{

// Moves towards what heats the switch, a degree in ten seconds, and never jumps. Heat is in hundredths of a
// degree Celsius, time in milliseconds of model time.
class Warmth
{
  public:
    void setTarget(int heat, std::uint64_t now)
    {
        if (heat == _target)
            return;
        _from = at(now);
        _since = now;
        _target = heat;
    }

    int at(std::uint64_t now) const
    {
        const std::uint64_t way = static_cast<std::uint64_t>(std::abs(_target - _from));
        const std::uint64_t passed = now > _since ? now - _since : 0;
        const int gone = static_cast<int>(std::min(way, passed / kMillisecondsAHundredth));
        return _target > _from ? _from + gone : _from - gone;
    }

  private:
    static constexpr std::uint64_t kMillisecondsAHundredth = 100;

    int _from = 0;
    int _target = 0;
    std::uint64_t _since = 0;
};

} // namespace simulator

#endif
