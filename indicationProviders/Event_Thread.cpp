// The thread that turns switch events into indications: one loop for the four indication providers.
#include "indicationProviders/Event_Thread.h"

#include "common/Operation.h"
#include "support/cim_log.h"

#include <cimple/cimple.h>

#include <chrono>
#include <cstring>
#include <exception>

namespace cimple
{

namespace
{

constexpr std::chrono::seconds kIdleTime{1};

// Not the registry's clock: waits for the end of a thread are in real time.
std::uint64_t milliseconds()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

Event_List& listOf(const Event_Handling& handling)
{
    return VRAX_Maps::getInstance()->eventList(handling.kind);
}

} // namespace

Event_Thread::~Event_Thread()
{
    while (_running > 0)
        stop();
}

bool Event_Thread::start()
{
    const std::lock_guard<std::mutex> lock(_switching);
    if (_running > 0)
    {
        ++_running;
        return true;
    }
    listOf(_handling).open(_handling.source, _handling.types);
    ++_running;
    int error = ENOMEM;
    try
    {
        error = Thread::create_joinable(_thread, main, this);
    }
    catch (const std::exception&)
    {
        // There is no memory.
    }
    if (error != 0)
    {
        --_running;
        listOf(_handling).close();
        listOf(_handling).clear();
        logCritical(_handling.source, "enable_indications", "Unable to start the event thread", __LINE__);
        return false;
    }
    cim_log(kLogInfo, "%s", _handling.enabled);
    return true;
}

void Event_Thread::stop()
{
    const std::lock_guard<std::mutex> lock(_switching);
    if (_running == 0)
        return;
    if (_running > 1)
    {
        --_running;
        return;
    }
    // In this order: the thread that sees that it is the end finds in its list all that will ever be there.
    _lastMoment = milliseconds() + kLastMilliseconds;
    listOf(_handling).close();
    --_running;
    listOf(_handling).wake();
    void* result = nullptr;
    Thread::join(_thread, result);
    cim_log(kLogInfo, "%s", _handling.disabled);
}

void* Event_Thread::main(void* self)
{
    static_cast<Event_Thread*>(self)->run();
    return nullptr;
}

void Event_Thread::run()
{
    trace(_handling.source, _handling.threadFunction, __LINE__);
    for (bool ending = false; !ending;)
    {
        ending = _running == 0;
        handleWaiting();
        if (!ending)
            listOf(_handling).wait(kIdleTime, _running);
    }
}

void Event_Thread::handleWaiting()
{
    Event_List& list = listOf(_handling);
    while (const std::unique_ptr<const Switch_Event> event = list.take())
    {
        if (_running == 0 && milliseconds() > _lastMoment)
        {
            cim_log(kLogCritical,
                    "CRIT:%s:%s[%d] %zu switch events given up at the end\n",
                    _handling.source,
                    _handling.threadFunction,
                    __LINE__,
                    list.clear() + 1);
            return;
        }
        _handling.handle(*event);
    }
}

} // namespace cimple
