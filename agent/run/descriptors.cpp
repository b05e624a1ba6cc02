// The limit of open descriptors.
#include "agent/run/descriptors.h"

#include <algorithm>
#include <sys/resource.h>

namespace cimd
{

std::size_t allowDescriptors(std::size_t needed)
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= needed)
        return needed;
    const rlim_t allowed = std::min<rlim_t>(needed, limit.rlim_max);
    const rlimit raised{allowed, limit.rlim_max};
    return static_cast<std::size_t>(setrlimit(RLIMIT_NOFILE, &raised) == 0 ? allowed : limit.rlim_cur);
}

} // namespace cimd
