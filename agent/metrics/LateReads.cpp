// A map of readings.
#include "agent/metrics/LateReads.h"

#include <algorithm>
#include <utility>

namespace cimd
{

void LateReads::add(const std::string& className, std::future<void>&& reading)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _readings.emplace(className, std::move(reading));
}

bool LateReads::has(const std::string& className)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto late = _readings.find(className);
    if (late == _readings.end())
        return false;
    if (late->second.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return true;
    _readings.erase(late);
    return false;
}

bool LateReads::awaitAll(Time end)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return std::all_of(_readings.begin(),
                       _readings.end(),
                       [end](const auto& entry)
                       { return entry.second.wait_until(end) == std::future_status::ready; });
}

} // namespace cimd
