// What is known about the instances of one map: whether a load has brought them, and whether they may be
// served.
#include "support/Freshness.h"

namespace cimple
{

namespace
{

constexpr std::uint32_t kMillisecondsPerTick = 100;
constexpr std::uint32_t kFreshTicks = kFreshnessMilliseconds / kMillisecondsPerTick;

} // namespace

// The ticks start again after 13 years and a half; differences stay right.
std::uint32_t Freshness::tick(std::uint64_t milliseconds)
{
    return kFirstTick + static_cast<std::uint32_t>(milliseconds / kMillisecondsPerTick % kTicks);
}

Freshness::State Freshness::stateOf(std::uint32_t word)
{
    return word < kFirstTick ? static_cast<State>(word) : State::Fresh;
}

Freshness::State Freshness::state() const
{
    return stateOf(_word.load());
}

bool Freshness::isFresh(std::uint64_t now) const
{
    const std::uint32_t since = _word.load();
    if (stateOf(since) != State::Fresh)
        return false;
    const std::uint32_t until = tick(now);
    const std::uint32_t age = until >= since ? until - since : kTicks - (since - until);
    return age < kFreshTicks;
}

bool Freshness::isComplete() const
{
    const State now = state();
    return now == State::Fresh || now == State::Stale;
}

void Freshness::forceStale()
{
    std::uint32_t word = _word.load();
    for (;;)
    {
        const State before = stateOf(word);
        if (before != State::Fresh && before != State::Loading)
            return;
        const State after = before == State::Fresh ? State::Stale : State::Overtaken;
        if (_word.compare_exchange_weak(word, static_cast<std::uint32_t>(after)))
            return;
    }
}

void Freshness::loadBegan(std::uint32_t builtFrom)
{
    become(State::Loading);
    _builtFrom.store(builtFrom);
}

void Freshness::loadSucceeded(std::uint64_t now)
{
    // Counted first: who sees the map fresh sees the new count, too.
    _contents.fetch_add(1);
    auto loading = static_cast<std::uint32_t>(State::Loading);
    if (!_word.compare_exchange_strong(loading, tick(now)))
        become(State::Stale);
}

void Freshness::loadFailed()
{
    become(State::Failed);
}

void Freshness::changed()
{
    _contents.fetch_add(1);
}

void Freshness::cleared()
{
    become(State::Empty);
}

} // namespace cimple
