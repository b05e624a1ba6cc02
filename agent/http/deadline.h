// Points in time by which something has to be done.
#ifndef AGENT_HTTP_DEADLINE_H
#define AGENT_HTTP_DEADLINE_H

#include <chrono>

namespace cimd
{

using Time = std::chrono::steady_clock::time_point;
inline constexpr Time kNever = Time::max();

inline Time timeNow()
{
    return std::chrono::steady_clock::now();
}

} // namespace cimd

#endif
