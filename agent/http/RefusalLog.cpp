// Folding repeated refusals.
#include "agent/http/RefusalLog.h"

#include "agent/auth/client_address.h"

#include <algorithm>

namespace cimd
{

namespace
{

constexpr std::chrono::minutes kFold{1};
constexpr std::size_t kAddresses = 256;
constexpr std::size_t kReasons = 64; // counted each

} // namespace

void RefusalLog::add(const Refusal& refusal, const std::string& peer, Time now)
{
    const bool isCounted = _totals.size() < kReasons || _totals.count(refusal.reason) != 0;
    ++_totals[isCounted ? refusal.reason : "other"];
    const auto [place, isNew] = _minutes.try_emplace(refusal.reason);
    Minute& minute = place->second;
    if (isNew)
    {
        minute.level = refusal.level;
        minute.area = refusal.area;
        minute.end = now + kFold;
        log(refusal.level, refusal.area, peer + ": " + refusal.reason + refusal.detail);
        return;
    }
    ++minute.more;
    std::string address = clientAddress(peer);
    if (minute.addresses.size() < kAddresses || minute.addresses.count(address) != 0)
        ++minute.addresses[std::move(address)];
}

Time RefusalLog::tellAll(Time now)
{
    Time next = kNever;
    for (auto place = _minutes.begin(); place != _minutes.end();)
    {
        const auto& [reason, minute] = *place;
        if (now < minute.end)
        {
            next = std::min(next, (place++)->second.end);
            continue;
        }
        if (minute.more != 0)
        {
            const auto most =
                std::max_element(minute.addresses.begin(),
                                 minute.addresses.end(),
                                 [](const auto& a, const auto& b) { return a.second < b.second; });
            log(minute.level,
                minute.area,
                std::to_string(minute.more) + " more within a minute, most from " + most->first + " (" +
                    std::to_string(most->second) + "): " + reason);
        }
        place = _minutes.erase(place);
    }
    return next;
}

} // namespace cimd
