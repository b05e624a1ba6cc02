// What is known about the instances of one map: whether a load has brought them, and whether they may be
// served.
#ifndef SUPPORT_FRESHNESS_H
#define SUPPORT_FRESHNESS_H

#include <atomic>
#include <cstdint>

namespace cimple
{

// How long a loaded map is served before the switch is read again.
constexpr std::uint32_t kFreshnessMilliseconds = 30000;

// Every function may be called from any thread without a lock, except where it says that it is the writer's:
// then only by the thread that holds the map's write lock.
//
// One word holds the state and, for a fresh map, the time of its load, so that no reader ever sees one
// without the other. 32 bits, because the target has no wider atomics.
class Freshness
{
  public:
    enum class State : std::uint32_t
    {
        Empty,     // never loaded, or cleared since
        Loading,   // being loaded
        Overtaken, // being loaded, but made stale meanwhile: the load has read part of the switch too early
        Stale,     // all that a load has brought, but to be loaded again
        Failed,    // the last load failed and left nothing
        Fresh      // all that a load has brought; fresh until it is too old
    };

    State state() const;

    // True when the map may be served without a load. `now`: milliseconds of a clock that never goes back.
    bool isFresh(std::uint64_t now) const;

    // True when the map holds all that a load has brought, be it fresh or not. A request that finds it
    // otherwise has lost a race with an unload or a failed load and must load again.
    bool isComplete() const;

    // Number of successful loads and changes, modulo 2^32: a different number means different instances.
    std::uint32_t contents() const { return _contents.load(); }

    // For a map built from other maps: the mark of their contents that its last load was given.
    std::uint32_t builtFrom() const { return _builtFrom.load(); }

    // The instances no longer show the switch as it is. They stay until the next load. A load under way will
    // leave the map stale.
    void forceStale();

    // The writer's, in this order: began, then one of the outcomes. A success that is overtaken, or that did
    // not begin, leaves the map stale.
    void loadBegan(std::uint32_t builtFrom);
    void loadSucceeded(std::uint64_t now);
    void loadFailed();

    // The writer's: an instance was replaced. The map stays as fresh as it was; maps built from it notice by
    // contents().
    void changed();
    // The writer's: the map was emptied.
    void cleared();

  private:
    // The states below Fresh are words of their own, the others mean fresh since that tick.
    static constexpr std::uint32_t kFirstTick = static_cast<std::uint32_t>(State::Fresh);
    static constexpr std::uint32_t kTicks = 0U - kFirstTick;

    static std::uint32_t tick(std::uint64_t milliseconds);
    static State stateOf(std::uint32_t word);
    void become(State state) { _word.store(static_cast<std::uint32_t>(state)); }

    std::atomic<std::uint32_t> _word{static_cast<std::uint32_t>(State::Empty)};
    std::atomic<std::uint32_t> _contents{0};
    std::atomic<std::uint32_t> _builtFrom{0};
};

} // namespace cimple

#endif
