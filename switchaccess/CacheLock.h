// Scoped read lock on the fabric data cache.
#ifndef SWITCHACCESS_CACHELOCK_H
#define SWITCHACCESS_CACHELOCK_H

#include "platform/data_cache.h"
#include "support/lock_order.h"

namespace cimple
{

// Taken after map locks, never before one. Check obtained() right after construction; without the lock
// nothing may be read from the cache. A thread may hold several.
class CacheLock
{
  public:
    CacheLock() : _obtained(false)
    {
        lock_order::asking(lock_order::Lock::dataCache(), lock_order::Mode::Read);
        _obtained = DataCache::instance()->dcRdLock() == 0;
        if (_obtained)
            lock_order::obtained(lock_order::Lock::dataCache(), lock_order::Mode::Read);
    }
    ~CacheLock()
    {
        if (!_obtained)
            return;
        lock_order::released(lock_order::Lock::dataCache());
        DataCache::instance()->dcRdUnlock();
    }
    CacheLock(const CacheLock&) = delete;
    CacheLock& operator=(const CacheLock&) = delete;

    bool obtained() const { return _obtained; }

  private:
    bool _obtained;
};

// For loads: throws a critical VRAX_Except in the name of `source`'s load, at the caller's line, when the
// lock was not obtained.
void requireCacheLock(const CacheLock& lock, const char* source, int line = __builtin_LINE());

} // namespace cimple

#endif
