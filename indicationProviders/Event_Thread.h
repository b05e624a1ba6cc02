// The thread that turns switch events into indications: one loop for the four indication providers.
#ifndef INDICATIONPROVIDERS_EVENT_THREAD_H
#define INDICATIONPROVIDERS_EVENT_THREAD_H

#include "support/VRAX_Maps.h"

#include <cimple/Thread.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace cimple
{

// What is particular to one provider.
struct Event_Handling
{
    const char* source;         // the provider's unit, for the log
    const char* threadFunction; // the thread's name in the log
    Indication_Kind kind;
    Event_Types types; // of the events that it makes something of
    // Called on the thread for each of these, in order. Throws nothing.
    void (*handle)(const Switch_Event& event);
    const char* enabled; // log lines
    const char* disabled;
};

class Event_Thread
{
  public:
    explicit Event_Thread(const Event_Handling& handling) : _handling(handling) {}
    ~Event_Thread();
    Event_Thread(const Event_Thread&) = delete;
    Event_Thread& operator=(const Event_Thread&) = delete;

    // Registers for the events and starts the thread. Each further call counts, and needs its stop(). False
    // when there is no thread; then nothing has changed.
    bool start();
    // The last one ends the thread, which handles first what waits in its list; nothing when it does not run.
    // What has to wait for longer than kLastMilliseconds then is given up and logged. Not to be called on the
    // thread itself.
    void stop();

  private:
    static constexpr std::uint64_t kLastMilliseconds = 1000;

    static void* main(void* self);
    void run();
    void handleWaiting();

    const Event_Handling _handling;
    std::mutex _switching; // held over start() and stop()
    Thread _thread;
    std::atomic<std::uint32_t> _running{0};
    std::uint64_t _lastMoment = 0; // to handle events; for who has seen that _running is 0
};

} // namespace cimple

#endif
