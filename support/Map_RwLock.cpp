// The read-write lock of one instance map.
#include "support/Map_RwLock.h"

#include "support/lock_order.h"

#include <system_error>

namespace cimple
{

Map_RwLock::Map_RwLock()
{
    pthread_rwlockattr_t attributes;
    int result = pthread_rwlockattr_init(&attributes);
    if (result == 0)
    {
        // The C library's other kind of this preference heeds it no more than the default does.
        result = pthread_rwlockattr_setkind_np(&attributes, PTHREAD_RWLOCK_PREFER_WRITER_NONRECURSIVE_NP);
        if (result == 0)
            result = pthread_rwlock_init(&_lock, &attributes);
        pthread_rwlockattr_destroy(&attributes);
    }
    if (result != 0)
        throw std::system_error(result, std::generic_category(), "instance map lock");
}

Map_RwLock::~Map_RwLock()
{
    pthread_rwlock_destroy(&_lock);
}

int Map_RwLock::read()
{
    return pthread_rwlock_rdlock(&_lock);
}

int Map_RwLock::write()
{
    return pthread_rwlock_wrlock(&_lock);
}

int Map_RwLock::tryRead()
{
    return pthread_rwlock_tryrdlock(&_lock);
}

void Map_RwLock::unlock()
{
    pthread_rwlock_unlock(&_lock);
}

void Map_RwLock::assertWriting(providerEnum_t map) const
{
    lock_order::requireWriting(lock_order::Lock::map(map));
}

} // namespace cimple
