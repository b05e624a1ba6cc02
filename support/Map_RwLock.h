// The read-write lock of one instance map.
#ifndef SUPPORT_MAP_RWLOCK_H
#define SUPPORT_MAP_RWLOCK_H

#include "support/providerEnum.h"
#include "support/thread_annotations.h"

#include <pthread.h>

namespace cimple
{

// A writer that waits goes before readers that ask after it: requests that overlap all the time would
// otherwise keep loads and changes out for good. So a thread must not ask for a read lock that it has, or it
// waits for a writer that waits for it. Nor may it ask to write while it reads: it would wait for itself.
//
// Results are errno values, 0 when the lock was obtained. The thread that writes and asks again, for either,
// gets EDEADLK at once.
//
// clang does not follow these calls: a guard may rightly own nothing, since its thread writes further out.
class VRAX_CAPABILITY("map lock") Map_RwLock
{
  public:
    Map_RwLock();
    ~Map_RwLock();
    Map_RwLock(const Map_RwLock&) = delete;
    Map_RwLock& operator=(const Map_RwLock&) = delete;

    int read();
    int write();
    // Does not wait: EBUSY when another thread writes, or waits to.
    int tryRead();
    void unlock();

    // Says that the calling thread writes to `map`, the map of this lock, whichever guard further out has
    // seen to it; debug builds stop the program when it does not. The one place where clang takes our word
    // for it, because it cannot know of the guard further out.
    void assertWriting(providerEnum_t map) const VRAX_ASSERT_CAPABILITY(this);

  private:
    pthread_rwlock_t _lock;
};

} // namespace cimple

#endif
