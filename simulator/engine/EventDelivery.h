// The thread of the simulated firmware that hands events to their receiver.
#ifndef SIMULATOR_ENGINE_EVENTDELIVERY_H
#define SIMULATOR_ENGINE_EVENTDELIVERY_H

#include "simulator/model/SwitchEvent.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace simulator
{

// The thread runs while somebody receives. Its lock is a leaf: nothing is called with it held.
class EventDelivery
{
  public:
    // `everySecond` is run by the thread, too, once a second.
    explicit EventDelivery(std::function<void()> everySecond) : _everySecond(std::move(everySecond)) {}
    ~EventDelivery() { end(); }
    EventDelivery(const EventDelivery&) = delete;
    EventDelivery& operator=(const EventDelivery&) = delete;

    // As xpl_swReceiveEvents. Throws std::system_error when there is no thread to be had. Called by the
    // receiver, it stops the program with a message: it would wait for itself.
    void receive(xpl_SwitchEventReceiver receiver, void* context);

    // Hands the events out, in order, to who receives at present. What does not fit into the queue is lost,
    // which is told on standard error once until the queue has been empty.
    void put(std::vector<SwitchEvent> events);

    // Nobody receives any more. A receiver that ends the process is not waited for.
    void endAtExit();

  private:
    void run();
    void end();

    const std::function<void()> _everySecond;
    std::mutex _changing; // of one change of the receiver
    std::thread _thread;  // guarded by _changing

    std::mutex _mutex; // of what follows
    std::condition_variable _changed;
    xpl_SwitchEventReceiver _receiver = nullptr;
    void* _context = nullptr;
    std::deque<SwitchEvent> _queue;
    bool _delivering = false;
    bool _replacing = false; // no delivery begins
    bool _ending = false;
    bool _toldLoss = false;
};

} // namespace simulator

#endif
