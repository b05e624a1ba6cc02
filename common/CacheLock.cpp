// Scoped read lock on the fabric data cache.
#include "common/CacheLock.h"

#include "common/VRAX_Except.h"

namespace cimple
{

void requireCacheLock(const CacheLock& lock, const char* source)
{
    if (!lock.obtained())
        throw VRAX_Except(source, "load", __LINE__, CRIT, "Unable to obtaion datacache rdlock");
}

} // namespace cimple
