// The traffic and error counters of one port as functions of model time.
#ifndef SIMULATOR_MODEL_TRAFFICMETER_H
#define SIMULATOR_MODEL_TRAFFICMETER_H

#include "simulator/model/counters.h"
#include "simulator/model/names.h"

#include <array>
#include <cstdint>

namespace simulator
{

// What a port carries while its link is up.
struct Load
{
    int rxPercent = 0; // of the link's data rate, in the mean
    int txPercent = 0;
    int frameBytes = 1024;
    int class2Percent = 0;
    int errorsPerHour = 0;
};

// Rates during the present second.
struct Rates
{
    std::uint64_t rxBytes = 0;
    std::uint64_t txBytes = 0;
    std::uint64_t rxFrames = 0;
    std::uint64_t txFrames = 0;
};

// Nothing runs in the background: a counter is its value when the link last changed plus what the load moves
// from then to now. The load swells and ebbs around its mean once a minute, in steps of a second; within a
// step the rate is constant, so over a whole second of model time a counter grows by exactly the rate
// reported in that second. Times are milliseconds of model time and never run backwards. Counters wrap at 64
// bits.
class TrafficMeter
{
  public:
    // `seed` gives the port its own phase and its own spacing of errors.
    TrafficMeter(std::uint64_t seed, const Load& load) : _seed(seed), _load(load) {}

    // The link came up with this speed, or went down: LinkSpeed::automatic.
    void setLink(LinkSpeed speed, std::uint64_t now);
    void setLoad(const Load& load, std::uint64_t now);
    const Load& load() const { return _load; }

    // `index` is a place in kCounters.
    std::uint64_t counter(std::size_t index, std::uint64_t now) const;
    void setCounter(std::size_t index, std::uint64_t value, std::uint64_t now);
    void clear(std::uint64_t now);

    Rates rates(std::uint64_t now) const;

  private:
    // What the present load moves from time zero to `now`.
    std::uint64_t wordsUntil(std::uint64_t now, int percent) const;
    std::uint64_t trafficUntil(CounterKind kind, std::uint64_t now) const;
    std::uint64_t errorsUntil(std::size_t index, std::uint64_t now) const;
    std::uint64_t movedUntil(std::size_t index, std::uint64_t now) const;
    void fold(std::uint64_t now);

    std::uint64_t _seed;
    Load _load;
    LinkSpeed _speed = LinkSpeed::automatic;
    std::uint64_t _since = 0;
    std::array<std::uint64_t, kCounterCount> _base{};
};

} // namespace simulator

#endif
