// Scoped read lock on the fabric data cache.
#include "switchaccess/CacheLock.h"

#include "support/VRAX_Except.h"

namespace cimple
{

void requireCacheLock(const CacheLock& lock, const char* source, int line)
{
    if (!lock.obtained())
        throw VRAX_Except(source, "load", line, CRIT, "Unable to obtaion datacache rdlock");
}

} // namespace cimple
