// Counting failed log-ins by address.
#include "agent/auth/GuessDelay.h"

#include <algorithm>
#include <arpa/inet.h>
#include <string_view>

namespace cimd
{

namespace
{

constexpr std::chrono::milliseconds kFirst{250};
constexpr std::chrono::minutes kMemory{15};
constexpr unsigned kMostDoublings = 20; // beyond every delay that can be set
constexpr std::size_t kNetworkBytes = 8;

/** "192.0.2.7" for "192.0.2.7:49152"; the network part of an IPv6 address, as bytes. */
std::string addressOf(std::string_view peer)
{
    const std::string_view host = peer.substr(0, peer.rfind(':'));
    if (host.empty() || host.front() != '[')
        return std::string(host);
    const std::string text(host.substr(1, host.find_first_of("%]") - 1));
    in6_addr address{};
    if (inet_pton(AF_INET6, text.c_str(), &address) != 1)
        return std::string(host);
    return {std::begin(address.s6_addr), std::begin(address.s6_addr) + kNetworkBytes};
}

} // namespace

GuessDelay::GuessDelay(std::size_t addresses, std::chrono::milliseconds longest)
    : _longest(longest), _failures(addresses, kMemory)
{
}

std::chrono::milliseconds GuessDelay::failed(const std::string& peer, Time now)
{
    const std::string address = addressOf(peer);
    const std::lock_guard lock(_mutex);
    const unsigned* before = _failures.find(address, now);
    const unsigned failures = before != nullptr ? std::min(*before + 1, kMostDoublings) : 1;
    _failures.put(address, failures, now);
    return delayAfter(failures);
}

std::chrono::milliseconds GuessDelay::present(const std::string& peer, Time now)
{
    const std::lock_guard lock(_mutex);
    const unsigned* failures = _failures.find(addressOf(peer), now);
    return failures != nullptr ? delayAfter(*failures) : std::chrono::milliseconds(0);
}

void GuessDelay::succeeded(const std::string& peer)
{
    const std::lock_guard lock(_mutex);
    _failures.erase(addressOf(peer));
}

std::chrono::milliseconds GuessDelay::delayAfter(unsigned failures) const
{
    return std::min(kFirst * (1U << (failures - 1)), _longest);
}

} // namespace cimd
