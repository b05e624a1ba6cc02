// Counting failed log-ins by address.
#include "agent/auth/GuessDelay.h"

#include "agent/auth/client_address.h"

#include <algorithm>

namespace cimd
{

namespace
{

constexpr std::chrono::milliseconds kFirst{250};
constexpr std::chrono::minutes kMemory{15};
constexpr unsigned kMostDoublings = 20; // beyond every delay that can be set

} // namespace

GuessDelay::GuessDelay(std::size_t addresses, std::chrono::milliseconds longest)
    : _longest(longest), _failures(addresses, kMemory)
{
}

std::chrono::milliseconds GuessDelay::failed(const std::string& peer, Time now)
{
    const std::string address = clientAddress(peer);
    const std::lock_guard lock(_mutex);
    const unsigned* before = _failures.find(address, now);
    const unsigned failures = before != nullptr ? std::min(*before + 1, kMostDoublings) : 1;
    _failures.put(address, failures, now);
    return delayAfter(failures);
}

std::chrono::milliseconds GuessDelay::present(const std::string& peer, Time now)
{
    const std::lock_guard lock(_mutex);
    const unsigned* failures = _failures.find(clientAddress(peer), now);
    return failures != nullptr ? delayAfter(*failures) : std::chrono::milliseconds(0);
}

bool GuessDelay::hasFailed(const std::string& peer, Time now)
{
    const std::lock_guard lock(_mutex);
    return _failures.find(clientAddress(peer), now) != nullptr;
}

void GuessDelay::succeeded(const std::string& peer)
{
    const std::lock_guard lock(_mutex);
    _failures.erase(clientAddress(peer));
}

std::chrono::milliseconds GuessDelay::delayAfter(unsigned failures) const
{
    return std::min(kFirst * (1U << (failures - 1)), _longest);
}

} // namespace cimd
