// The traffic and error counters of one port as functions of model time.
#include "simulator/model/traffic_meter.h"

namespace simulator
{
namespace
{

constexpr std::uint64_t kStepsInPeriod = 60;
constexpr std::uint64_t kStepMilliseconds = 1000;
constexpr std::uint64_t kHourMilliseconds = 3600 * 1000;
constexpr std::uint64_t kBytesPerWord = 4;

// Transmission words a second: the line rate at 8b/10b, 40 bits a word (FC-PI-4).
constexpr std::uint64_t wordsPerSecond(LinkSpeed speed)
{
    switch (speed)
    {
    case LinkSpeed::automatic:
        return 0;
    case LinkSpeed::gb1:
        return 1062500000ULL / 40;
    case LinkSpeed::gb2:
        return 2125000000ULL / 40;
    case LinkSpeed::gb4:
        return 4250000000ULL / 40;
    case LinkSpeed::gb8:
        return 8500000000ULL / 40;
    case LinkSpeed::gb10:
        return 12750000000ULL / 40;
    case LinkSpeed::gb20:
        return 25500000000ULL / 40;
    }
    return 0;
}

// Thousandths of the mean load in one step: up from 71 % to 129 % in half a period and down again; 1000 in
// the mean.
constexpr std::uint64_t swell(std::uint64_t step)
{
    const std::uint64_t place = step % kStepsInPeriod;
    const std::uint64_t half = kStepsInPeriod / 2;
    return 710 + 20 * (place < half ? place : kStepsInPeriod - 1 - place);
}

// The sum of `perStep` from time zero to `now`, the running step in proportion.
template <class PerStep>
std::uint64_t accumulate(std::uint64_t now, PerStep perStep)
{
    const std::uint64_t step = now / kStepMilliseconds;
    std::uint64_t period = 0;
    std::uint64_t part = 0;
    for (std::uint64_t i = 0; i < kStepsInPeriod; ++i)
    {
        const std::uint64_t amount = perStep(i);
        period += amount;
        part += i < step % kStepsInPeriod ? amount : 0;
    }
    return step / kStepsInPeriod * period + part +
           perStep(step) * (now % kStepMilliseconds) / kStepMilliseconds;
}

} // namespace

std::uint64_t mix(std::uint64_t seed, std::uint64_t place)
{
    // The finaliser of the public-domain splitmix64 generator, on a sequence of odd stride.
    std::uint64_t z = seed + 0x9E3779B97F4A7C15ULL * (place + 1);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

std::uint64_t TrafficMeter::wordsInStep(std::uint64_t step, int percent) const
{
    const std::uint64_t line = wordsPerSecond(_speed);
    const std::uint64_t wanted =
        line / 100 * static_cast<std::uint64_t>(percent) / 1000 * swell(step + _seed % kStepsInPeriod);
    return wanted < line ? wanted : line;
}

std::uint64_t TrafficMeter::perStep(CounterKind kind, std::uint64_t step) const
{
    const bool receives = kind == CounterKind::rxWords || kind == CounterKind::rxFrames ||
                          kind == CounterKind::rxClass2 || kind == CounterKind::rxClass3;
    const std::uint64_t words = wordsInStep(step, receives ? _load.rxPercent : _load.txPercent);
    const std::uint64_t frames = words * kBytesPerWord / static_cast<std::uint64_t>(_load.frameBytes);
    const std::uint64_t class2 = frames * static_cast<std::uint64_t>(_load.class2Percent) / 100;
    switch (kind)
    {
    case CounterKind::rxWords:
    case CounterKind::txWords:
        return words;
    case CounterKind::rxFrames:
    case CounterKind::txFrames:
        return frames;
    case CounterKind::rxClass2:
    case CounterKind::txClass2:
        return class2;
    case CounterKind::rxClass3:
    case CounterKind::txClass3:
        return frames - class2;
    case CounterKind::error:
        break;
    }
    return 0;
}

std::uint64_t TrafficMeter::errorsUntil(std::size_t index, std::uint64_t now) const
{
    // In thousandths of an error: the share is in thousandths too. Each counter runs at 50 % to 150 % of its
    // share.
    const std::uint64_t luck = mix(_seed, index);
    const std::uint64_t perHour = static_cast<std::uint64_t>(_load.errorsPerHour) *
                                  kCounters[index].errorShare * (50 + luck % 101) / 100;
    const std::uint64_t moved =
        now / kHourMilliseconds * perHour + now % kHourMilliseconds * perHour / kHourMilliseconds;
    return (moved + (luck >> 32) % 1000) / 1000;
}

std::uint64_t TrafficMeter::movedUntil(std::size_t index, std::uint64_t now) const
{
    const CounterKind kind = kCounters[index].kind;
    if (kind == CounterKind::error)
    {
        return errorsUntil(index, now);
    }
    return accumulate(now, [this, kind](std::uint64_t step) { return perStep(kind, step); });
}

std::uint64_t TrafficMeter::counter(std::size_t index, std::uint64_t now) const
{
    if (_speed == LinkSpeed::automatic || now <= _since)
    {
        return _base[index];
    }
    return _base[index] + movedUntil(index, now) - movedUntil(index, _since);
}

void TrafficMeter::fold(std::uint64_t now)
{
    for (std::size_t i = 0; i < kCounterCount; ++i)
    {
        _base[i] = counter(i, now);
    }
    _since = now;
}

void TrafficMeter::setLink(LinkSpeed speed, std::uint64_t now)
{
    if (speed != _speed)
    {
        fold(now);
        _speed = speed;
    }
}

void TrafficMeter::setLoad(const Load& load, std::uint64_t now)
{
    fold(now);
    _load = load;
}

void TrafficMeter::setCounter(std::size_t index, std::uint64_t value, std::uint64_t now)
{
    fold(now);
    _base[index] = value;
}

void TrafficMeter::clear(std::uint64_t now)
{
    _base.fill(0);
    _since = now;
}

Rates TrafficMeter::rates(std::uint64_t now) const
{
    const std::uint64_t step = now / kStepMilliseconds;
    Rates rates;
    rates.rxBytes = perStep(CounterKind::rxWords, step) * kBytesPerWord;
    rates.txBytes = perStep(CounterKind::txWords, step) * kBytesPerWord;
    rates.rxFrames = perStep(CounterKind::rxFrames, step);
    rates.txFrames = perStep(CounterKind::txFrames, step);
    return rates;
}

} // namespace simulator
