// The alarm's thread.
#include "agent/http/Alarm.h"

#include <algorithm>
#include <utility>

namespace cimd
{

Alarm::Alarm(std::function<Time(Time)> ring)
    : _ring(std::move(ring)), _next(Time::min().time_since_epoch().count()), _thread([this] { run(); })
{
}

void Alarm::stop()
{
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stopping = true;
    }
    _changed.notify_all();
    if (_thread.joinable())
        _thread.join();
}

void Alarm::ringBy(Time time)
{
    if (time.time_since_epoch().count() >= _next)
        return;
    std::lock_guard<std::mutex> lock(_mutex);
    _next = std::min(_next.load(), time.time_since_epoch().count());
    _changed.notify_all();
}

void Alarm::run()
{
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_stopping)
    {
        const Time next{Clock::duration(_next)};
        if (next == kNever)
            _changed.wait(lock);
        else if (next > Clock::now())
            _changed.wait_until(lock, next);
        else
        {
            _next = kNever.time_since_epoch().count(); // what is asked for during the ring counts
            lock.unlock();
            const Time wanted = _ring(Clock::now());
            lock.lock();
            _next = std::min(_next.load(), wanted.time_since_epoch().count());
        }
    }
}

} // namespace cimd
