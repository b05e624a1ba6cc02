// Debug check of the order in which each thread takes the module's locks.
#include "support/lock_order.h"

#ifdef VRAX_LOCK_CHECKS
#include <cstdio>
#include <cstdlib>
#include <vector>
#endif

namespace cimple
{
namespace lock_order
{

const char* Lock::name() const
{
    if (isMap())
        return mapClassName(_map);
    return _rank < 0 ? "the association-load mutex" : "the data cache";
}

#ifdef VRAX_LOCK_CHECKS
namespace
{

struct Held
{
    Lock lock;
    Mode mode;
};

thread_local std::vector<Held> heldByThread;

[[noreturn]] void stop(Lock asked, Lock held, const char* why)
{
    std::fprintf(stderr, "lock order: %s asked for while holding %s: %s\n", asked.name(), held.name(), why);
    std::abort();
}

} // namespace

void asking(Lock lock, Mode mode)
{
    for (const Held& held : heldByThread)
    {
        if (!(held.lock == lock))
            continue;
        // The writer of a map gets an error at once; the mutex and the data cache count their owner's
        // requests; several read locks of one thread are legal. Only turning a read lock into a write lock
        // waits for ever, for the thread itself.
        if (lock.isMap() && held.mode == Mode::Read && mode == Mode::Write)
            stop(lock, held.lock, "a read lock cannot become a write lock");
        return;
    }
    for (const Held& held : heldByThread)
    {
        if (held.lock.rank() >= lock.rank())
            stop(lock, held.lock, "the locks must be taken in the opposite order or never together");
    }
}

void obtained(Lock lock, Mode mode)
{
    heldByThread.push_back({lock, mode});
}

void released(Lock lock)
{
    for (auto held = heldByThread.rbegin(); held != heldByThread.rend(); ++held)
    {
        if (held->lock == lock)
        {
            heldByThread.erase(std::next(held).base());
            return;
        }
    }
}
#endif

} // namespace lock_order
} // namespace cimple
