// The traffic and error counters of one port as functions of model time.
#include "simulator/model/TrafficMeter.h"

#include "simulator/model/made_up.h"

#include <algorithm>

namespace simulator
{
namespace
{

constexpr std::uint64_t kStepMilliseconds = 1000;
constexpr std::uint64_t kStepsInHalf = 30;
constexpr std::uint64_t kStepsInPeriod = 2 * kStepsInHalf;
constexpr std::uint64_t kPeriodMilliseconds = kStepsInPeriod * kStepMilliseconds;
constexpr std::uint64_t kHourMilliseconds = 3600 * 1000;
constexpr std::uint64_t kBytesPerWord = 4;
constexpr std::uint64_t kWidestSwing = 290; // thousandths of the mean load

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

// In step n of a half period the load is 1000 + swing * (2n - 29) / 29 thousandths of its mean: it climbs
// from 1000 - swing to 1000 + swing, and falls again in the other half. Counted in 29ths of thousandths all
// of it is whole.
constexpr std::uint64_t kParts = kStepsInHalf - 1;

constexpr std::uint64_t loadInStep(std::uint64_t step, std::uint64_t swing)
{
    const std::uint64_t place = step < kStepsInHalf ? step : kStepsInPeriod - 1 - step;
    return kParts * 1000 + 2 * swing * place - swing * kParts;
}

// The sum of loadInStep over the first `steps` steps of a period.
constexpr std::uint64_t loadInSteps(std::uint64_t steps, std::uint64_t swing)
{
    const std::uint64_t climbing = steps < kStepsInHalf ? steps : kStepsInPeriod - steps;
    const std::uint64_t climbed = climbing * kParts * 1000 +
                                  swing * climbing * (climbing - (climbing > 0 ? 1 : 0)) -
                                  swing * kParts * climbing;
    return steps < kStepsInHalf ? climbed : kParts * 1000 * kStepsInPeriod - climbed;
}

} // namespace

std::uint64_t TrafficMeter::wordsUntil(std::uint64_t now, int percent) const
{
    if (percent == 0)
        return 0;
    const std::uint64_t share = static_cast<std::uint64_t>(percent);
    const std::uint64_t line = wordsPerSecond(_speed);
    // No step may ask for more than the link carries.
    const std::uint64_t swing = std::min<std::uint64_t>(kWidestSwing, 100 * 1000 / share - 1000);
    const std::uint64_t shifted = now + _seed % kStepsInPeriod * kStepMilliseconds;
    const std::uint64_t inPeriod = shifted % kPeriodMilliseconds;
    const std::uint64_t step = inPeriod / kStepMilliseconds;
    const std::uint64_t load = loadInSteps(step, swing) * kStepMilliseconds +
                               loadInStep(step, swing) * (inPeriod % kStepMilliseconds);
    const std::uint64_t fullLoad = kParts * 1000 * kStepMilliseconds; // a second of the mean load
    return shifted / kPeriodMilliseconds * (line * share * kStepsInPeriod / 100) +
           load * (line * share / 100) / fullLoad;
}

std::uint64_t TrafficMeter::trafficUntil(CounterKind kind, std::uint64_t now) const
{
    const bool receives = kind == CounterKind::rxWords || kind == CounterKind::rxFrames ||
                          kind == CounterKind::rxClass2 || kind == CounterKind::rxClass3;
    const std::uint64_t words = wordsUntil(now, receives ? _load.rxPercent : _load.txPercent);
    const std::uint64_t frames = words * kBytesPerWord / static_cast<std::uint64_t>(_load.frameBytes);
    // In hundreds first: frames times a percentage would overflow after some decades.
    const auto class2Share = static_cast<std::uint64_t>(_load.class2Percent);
    const std::uint64_t class2 = frames / 100 * class2Share + frames % 100 * class2Share / 100;
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
    return kind == CounterKind::error ? errorsUntil(index, now) : trafficUntil(kind, now);
}

std::uint64_t TrafficMeter::counter(std::size_t index, std::uint64_t now) const
{
    if (_speed == LinkSpeed::automatic || now <= _since)
        return _base[index];
    return _base[index] + movedUntil(index, now) - movedUntil(index, _since);
}

void TrafficMeter::fold(std::uint64_t now)
{
    for (std::size_t i = 0; i < kCounterCount; ++i)
        _base[i] = counter(i, now);
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
    const std::uint64_t begin = now / kStepMilliseconds * kStepMilliseconds;
    const auto inSecond = [this, begin](CounterKind kind)
    { return trafficUntil(kind, begin + kStepMilliseconds) - trafficUntil(kind, begin); };
    Rates rates;
    rates.rxBytes = inSecond(CounterKind::rxWords) * kBytesPerWord;
    rates.txBytes = inSecond(CounterKind::txWords) * kBytesPerWord;
    rates.rxFrames = inSecond(CounterKind::rxFrames);
    rates.txFrames = inSecond(CounterKind::txFrames);
    return rates;
}

} // namespace simulator
