// The switch events that wait for the thread of one indication provider.
#ifndef SUPPORT_EVENT_LIST_H
#define SUPPORT_EVENT_LIST_H

#include "support/Switch_Event.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

namespace cimple
{

// The events that somebody knows: bit n is type n.
typedef std::uint32_t Event_Types;

constexpr Event_Types eventType(std::int32_t type)
{
    return type >= 0 && type <= kLastAlertEvent ? Event_Types{1} << type : Event_Types{0};
}

// In order of arrival. All operations may be called from any thread; none throws.
//
// The list's lock is a leaf: a thread that asks for it holds no other lock of the module, and holds it for
// no longer than it takes to link an event in or out.
class Event_List
{
  public:
    // Room for what is told when a switch with the most ports, 1,536, comes, goes or loses its power, and
    // faster than the thread can follow: about a megabyte with texts of the usual length.
    static constexpr std::size_t kCapacity = 2048;
    static constexpr std::uint64_t kLossReportMilliseconds = 60000;

    // Milliseconds of a clock that never goes back.
    typedef std::uint64_t (*Clock)();
    explicit Event_List(Clock clock) : _clock(clock) {}
    Event_List(const Event_List&) = delete;
    Event_List& operator=(const Event_List&) = delete;

    // Registers a provider, named as in the log, for the events of these types. They are kept from now on.
    // Every open() needs its close().
    void open(const char* provider, Event_Types types);
    // Nothing is added from the last close() on; what waits stays to be taken.
    void close();

    // Copies the event in if a registered provider knows its type. What finds no room or no memory is lost:
    // counted, and logged at once or a minute after the last such line.
    void put(const xpl_SwitchEvent& event);

    // The first event, which is the caller's then; null when none waits.
    std::unique_ptr<Switch_Event> take();
    // Returns when an event waits, when `users` is 0, or when the time is up.
    void wait(std::chrono::milliseconds longest, const std::atomic<std::uint32_t>& users);
    // To be called after a change of any `users`.
    void wake();
    struct Counts
    {
        std::size_t waiting;
        std::uint64_t lost; // since the start
    };
    Counts counts();
    // Forgets what waits; how many these were.
    std::size_t clear();

  private:
    class Guard;
    struct Losses
    {
        const char* provider;
        std::uint32_t count;
    };

    // What is to be logged now; a count of 0 is nothing.
    Losses dueLosses();
    static void report(const Losses& losses);

    const Clock _clock;
    std::mutex _mutex;
    std::condition_variable _changed;
    const char* _provider = "";
    unsigned _openings = 0;
    std::atomic<Event_Types> _types{0}; // written under the lock
    // A ring: `_count` events from `_first` on.
    std::array<std::unique_ptr<Switch_Event>, kCapacity> _events;
    std::size_t _first = 0;
    std::size_t _count = 0;
    std::uint32_t _lost = 0;    // and not logged yet
    std::uint64_t _allLost = 0; // since the start
    bool _hasReported = false;
    std::uint64_t _reportedAt = 0;
};

} // namespace cimple

#endif
