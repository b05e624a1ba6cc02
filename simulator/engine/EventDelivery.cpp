// The thread of the simulated firmware that hands events to their receiver.
#include "simulator/engine/EventDelivery.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace simulator
{
namespace
{

constexpr std::size_t kMostQueued = 16384; // a few switches that come with all their ports
constexpr auto kLookEvery = std::chrono::seconds(1);

thread_local bool isDeliveryThread = false;

} // namespace

void EventDelivery::endAtExit()
{
    if (!isDeliveryThread)
        receive(nullptr, nullptr);
}

void EventDelivery::receive(xpl_SwitchEventReceiver receiver, void* context)
{
    if (isDeliveryThread)
    {
        std::fprintf(stderr, "simulated switch: xpl_swReceiveEvents called from within a receiver\n");
        std::abort();
    }
    const std::lock_guard<std::mutex> one(_changing);
    if (receiver == nullptr)
    {
        end();
        return;
    }
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _replacing = true;
        _changed.wait(lock, [this] { return !_delivering; });
        _replacing = false;
        _receiver = receiver;
        _context = context;
    }
    _changed.notify_all();
    if (_thread.joinable())
        return;
    try
    {
        _thread = std::thread([this] { run(); });
    }
    catch (...)
    {
        end();
        throw;
    }
}

void EventDelivery::end()
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _receiver = nullptr;
        _queue.clear();
        _ending = true;
    }
    _changed.notify_all();
    if (_thread.joinable())
        _thread.join();
    const std::lock_guard<std::mutex> lock(_mutex);
    _ending = false;
}

void EventDelivery::put(std::vector<SwitchEvent> events)
{
    bool tell = false;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_receiver == nullptr)
            return;
        for (SwitchEvent& event : events)
            if (_queue.size() < kMostQueued)
                _queue.push_back(std::move(event));
            else
                tell = tell || !std::exchange(_toldLoss, true);
    }
    _changed.notify_all();
    if (tell)
        std::fprintf(stderr, "simulated switch: events are lost: their receiver does not keep up\n");
}

void EventDelivery::run()
{
    isDeliveryThread = true;
    auto nextLook = std::chrono::steady_clock::now() + kLookEvery;
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_ending)
    {
        if (_queue.empty() || _replacing)
        {
            _toldLoss = _toldLoss && !_queue.empty();
            _changed.wait_until(lock, nextLook);
        }
        else
        {
            const SwitchEvent event = std::move(_queue.front());
            _queue.pop_front();
            _delivering = true;
            const auto receiver = _receiver;
            void* const context = _context;
            lock.unlock();
            const xpl_SwitchEvent view = viewOf(event);
            receiver(&view, context);
            lock.lock();
            _delivering = false;
            _changed.notify_all();
        }
        if (!_ending && std::chrono::steady_clock::now() >= nextLook)
        {
            lock.unlock();
            _everySecond();
            nextLook = std::chrono::steady_clock::now() + kLookEvery;
            lock.lock();
        }
    }
}

} // namespace simulator
