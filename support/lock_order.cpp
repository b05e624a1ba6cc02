// Debug check of the order in which each thread takes the module's locks.
#include "support/lock_order.h"

#ifdef VRAX_LOCK_CHECKS
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#endif

namespace cimple
{
namespace lock_order
{

const char* Lock::name() const
{
    if (isMap())
        return mapClassName(_map);
    if (_rank < 0)
        return "the association-load mutex";
    return isAlone() ? "an event list" : "the data cache";
}

#ifdef VRAX_LOCK_CHECKS
namespace
{

// Room for every lock of the longest load, entered again and again.
constexpr std::size_t kMostHeld = 64;

struct Held
{
    Lock lock = Lock::dataCache();
    Mode mode = Mode::Read;
};

// Without a destructor: a thread may still ask for locks while its process exits.
struct Held_Locks
{
    Held* begin() { return locks; }
    Held* end() { return locks + count; }

    Held locks[kMostHeld];
    std::size_t count = 0;
};

thread_local Held_Locks heldByThread;

[[noreturn]] void stop(Lock asked, Lock held, const char* why)
{
    std::fprintf(stderr, "lock order: %s asked for while holding %s: %s\n", asked.name(), held.name(), why);
    std::abort();
}

} // namespace

void asking(Lock lock, Mode mode)
{
    bool held = false;
    bool writing = false;
    for (const Held& one : heldByThread)
    {
        held = held || one.lock == lock;
        writing = writing || (one.lock == lock && one.mode == Mode::Write);
    }
    // The writer of a map gets an error at once; the mutex and the data cache count their owner's requests.
    // The reader of a map would wait for ever: for itself when it asks to write, and else for a writer that
    // came in between and waits for it.
    if (held)
    {
        if (lock.isMap() && !writing)
        {
            stop(lock,
                 lock,
                 mode == Mode::Write ? "a read lock cannot become a write lock"
                                     : "a writer that waits would stop the second read lock");
        }
        return;
    }
    for (const Held& one : heldByThread)
        if (one.lock.rank() >= lock.rank() || lock.isAlone())
            stop(lock, one.lock, "the locks must be taken in the opposite order or never together");
}

void obtained(Lock lock, Mode mode)
{
    if (heldByThread.count == kMostHeld)
        stop(lock, lock, "this thread never gives back its locks");
    heldByThread.locks[heldByThread.count++] = {lock, mode};
}

void released(Lock lock)
{
    for (std::size_t i = heldByThread.count; i > 0; --i)
    {
        if (heldByThread.locks[i - 1].lock == lock)
        {
            std::copy(heldByThread.locks + i, heldByThread.end(), heldByThread.locks + i - 1);
            --heldByThread.count;
            return;
        }
    }
}

void requireWriting(Lock lock)
{
    for (const Held& one : heldByThread)
        if (one.lock == lock && one.mode == Mode::Write)
            return;
    std::fprintf(stderr, "lock order: the map of %s is changed without its write lock\n", lock.name());
    std::abort();
}
#endif

} // namespace lock_order
} // namespace cimple
