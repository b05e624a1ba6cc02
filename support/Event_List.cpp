// The switch events that wait for the thread of one indication provider.
#include "support/Event_List.h"

#include "support/cim_log.h"
#include "support/lock_order.h"

#include <new>
#include <utility>

namespace cimple
{

// The lock, seen by the check of the lock order.
class Event_List::Guard
{
  public:
    explicit Guard(Event_List& list) : _lock(list._mutex, std::defer_lock)
    {
        lock_order::asking(lock_order::Lock::eventList(), lock_order::Mode::Write);
        _lock.lock();
        lock_order::obtained(lock_order::Lock::eventList(), lock_order::Mode::Write);
    }
    ~Guard() { lock_order::released(lock_order::Lock::eventList()); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    std::unique_lock<std::mutex>& lock() { return _lock; }

  private:
    std::unique_lock<std::mutex> _lock;
};

void Event_List::open(const char* provider, Event_Types types)
{
    const Guard guard(*this);
    _provider = provider;
    _types = types;
    ++_openings;
}

void Event_List::close()
{
    const Guard guard(*this);
    if (--_openings == 0)
        _types = 0;
}

void Event_List::put(const xpl_SwitchEvent& event)
{
    if ((_types & eventType(event.type)) == 0)
        return;
    std::unique_ptr<Switch_Event> copy;
    try
    {
        copy = std::make_unique<Switch_Event>(event);
    }
    catch (const std::bad_alloc&)
    {
        // Counted as lost below.
    }
    Losses due;
    {
        const Guard guard(*this);
        if (_openings == 0)
            return;
        if (copy != nullptr && _count < kCapacity)
            _events[(_first + _count++) % kCapacity] = std::move(copy);
        else
        {
            ++_lost;
            ++_allLost;
        }
        due = dueLosses();
    }
    _changed.notify_one();
    report(due);
}

std::unique_ptr<Switch_Event> Event_List::take()
{
    std::unique_ptr<Switch_Event> taken;
    Losses due;
    {
        const Guard guard(*this);
        if (_count > 0)
        {
            taken = std::move(_events[_first]);
            _first = (_first + 1) % kCapacity;
            --_count;
        }
        due = dueLosses();
    }
    report(due);
    return taken;
}

void Event_List::wait(std::chrono::milliseconds longest, const std::atomic<std::uint32_t>& users)
{
    Guard guard(*this);
    _changed.wait_for(guard.lock(), longest, [&] { return _count > 0 || users == 0; });
}

void Event_List::wake()
{
    // Who tests under the lock now waits by then.
    {
        const Guard guard(*this);
    }
    _changed.notify_all();
}

Event_List::Counts Event_List::counts()
{
    const Guard guard(*this);
    return {_count, _allLost};
}

std::size_t Event_List::clear()
{
    std::size_t cleared = 0;
    while (take() != nullptr)
        ++cleared;
    return cleared;
}

Event_List::Losses Event_List::dueLosses()
{
    if (_lost == 0)
        return {_provider, 0};
    const std::uint64_t now = _clock();
    if (_hasReported && now - _reportedAt < kLossReportMilliseconds)
        return {_provider, 0};
    _hasReported = true;
    _reportedAt = now;
    return {_provider, std::exchange(_lost, 0U)};
}

void Event_List::report(const Losses& losses)
{
    if (losses.count > 0)
    {
        cim_log(kLogCritical,
                "CRIT:%s:%s[%d] %u switch events lost: %zu are waiting already, or there is no memory\n",
                losses.provider,
                __func__,
                __LINE__,
                static_cast<unsigned>(losses.count),
                kCapacity);
    }
}

} // namespace cimple
