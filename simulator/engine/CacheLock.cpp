// The data cache's read-write lock.
#include "simulator/engine/CacheLock.h"

#include <cstdio>
#include <cstdlib>

namespace simulator
{
namespace
{

thread_local int heldByThisThread = 0;

[[noreturn]] void stop(const char* message)
{
    std::fprintf(stderr, "simulated switch: data cache lock: %s\n", message);
    std::abort();
}

} // namespace

void CacheLock::lockShared()
{
    std::unique_lock<std::mutex> guard(_mutex);
    if (heldByThisThread == 0)
        _changed.wait(guard, [this] { return !_writing && _waitingWriters == 0; });
    ++heldByThisThread;
    ++_readers;
}

void CacheLock::unlockShared()
{
    const std::lock_guard<std::mutex> guard(_mutex);
    if (heldByThisThread == 0)
        stop("dcRdUnlock by a thread that does not hold the read lock");
    --heldByThisThread;
    if (--_readers == 0)
        _changed.notify_all();
}

void CacheLock::lock()
{
    if (heldByThisThread != 0)
        stop("a thread changes the fabric while it holds the read lock");
    std::unique_lock<std::mutex> guard(_mutex);
    ++_waitingWriters;
    _changed.wait(guard, [this] { return !_writing && _readers == 0; });
    --_waitingWriters;
    _writing = true;
}

void CacheLock::unlock()
{
    const std::lock_guard<std::mutex> guard(_mutex);
    _writing = false;
    _changed.notify_all();
}

int CacheLock::readers() const
{
    const std::lock_guard<std::mutex> guard(_mutex);
    return _readers;
}

int CacheLock::writers() const
{
    const std::lock_guard<std::mutex> guard(_mutex);
    return _waitingWriters + (_writing ? 1 : 0);
}

} // namespace simulator
