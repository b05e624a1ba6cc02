// How many files and sockets the process may have open.
#ifndef AGENT_RUN_DESCRIPTORS_H
#define AGENT_RUN_DESCRIPTORS_H

#include <cstddef>

namespace cimd
{

// Raises the limit of open descriptors (RLIMIT_NOFILE) to what is needed, as far as the system lets it.
// @return how many there may be: `needed` or fewer.
std::size_t allowDescriptors(std::size_t needed);

} // namespace cimd

#endif
