// The data cache's read-write lock.
#ifndef SIMULATOR_ENGINE_CACHELOCK_H
#define SIMULATOR_ENGINE_CACHELOCK_H

#include "simulator/thread_annotations.h"

#include <condition_variable>
#include <mutex>

namespace simulator
{

// Writers go before new readers, but a thread that already reads is let in again at once: it would otherwise
// wait for a writer that waits for it. The process has one such lock; how often a thread holds it is kept per
// thread. Misuse (releasing what is not held, writing while reading) stops the program with a message: in
// firmware it would hang it.
class VRAX_CAPABILITY("cache lock") CacheLock
{
  public:
    // Not checked at compile time: the checker knows no lock that its holder may take again.
    void lockShared();
    void unlockShared();
    void lock() VRAX_ACQUIRE();
    void unlock() VRAX_RELEASE();

    // Read locks held at present, by all threads.
    int readers() const;
    // Writers that wait or write at present.
    int writers() const;

  private:
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    int _readers = 0;
    int _waitingWriters = 0;
    bool _writing = false;
};

} // namespace simulator

#endif
