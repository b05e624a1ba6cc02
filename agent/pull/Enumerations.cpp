// Opening, using and ending enumerations.
#include "agent/pull/Enumerations.h"

#include "agent/cim/CimError.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <sys/random.h>
#include <vector>

namespace cimd
{

namespace
{

// 128 bits from the kernel, in hexadecimal.
std::string randomName()
{
    unsigned char bytes[16];
    // Requests of up to 256 bytes are never cut short once the kernel's pool is ready.
    while (::getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes))
        if (errno != EINTR)
            throw CimError(CimStatus::Failed,
                           std::string("no random number for an enumeration: ") + std::strerror(errno));
    std::string name;
    for (const unsigned byte : bytes)
    {
        name += "0123456789abcdef"[byte >> 4U];
        name += "0123456789abcdef"[byte & 15U];
    }
    return name;
}

} // namespace

Enumerations::Enumerations(const Limits& limits, std::string spoolDirectory, Clock clock)
    : _limits(limits), _clock(std::move(clock)),
      _area(std::move(spoolDirectory), limits.spoolMemoryBytes, limits.spoolFileBytes)
{
}

std::chrono::seconds Enumerations::timeout(std::optional<std::uint32_t> wanted) const
{
    const std::uint32_t most = _limits.enumerationMostSeconds;
    if (!wanted)
        return std::chrono::seconds(std::min<std::uint32_t>(_limits.enumerationSeconds, most));
    if (*wanted == 0 || *wanted > most)
        throw CimError(CimStatus::InvalidOperationTimeout,
                       "parameter OperationTimeout: " + std::to_string(*wanted) +
                           " s is not supported, only 1 to " + std::to_string(most) + " s");
    return std::chrono::seconds(*wanted);
}

void Enumerations::checkRoom(const EnumerationOwner& owner) const
{
    const auto isOwners = [&owner](const Table::value_type& entry)
    {
        const EnumerationOwner& other = entry.second->owner;
        return other.principal == owner.principal && other.address == owner.address;
    };
    const bool isFull = _table.size() >= _limits.enumerations;
    if (isFull || std::count_if(_table.begin(), _table.end(), isOwners) >=
                      static_cast<std::ptrdiff_t>(_limits.clientEnumerations))
        throw CimError(CimStatus::ServerLimitsExceeded,
                       (isFull ? "there are " : "you have ") +
                           std::to_string(isFull ? _limits.enumerations : _limits.clientEnumerations) +
                           " open enumerations already: pull them to their end or close them");
}

Enumerations::Use Enumerations::add(Enumeration enumeration)
{
    expire();
    auto added = std::make_unique<Enumeration>(std::move(enumeration));
    added->isBusy = true;
    std::string name = randomName();
    const std::lock_guard lock(_mutex);
    checkRoom(added->owner);
    Enumeration& result = *(_table[name] = std::move(added));
    _size = _table.size();
    return {*this, std::move(name), result};
}

Enumerations::Table::iterator Enumerations::find(const std::string& name, const EnumerationOwner& owner)
{
    const auto place = _table.find(name);
    if (place == _table.end() || place->second->owner.principal != owner.principal)
        throw CimError(CimStatus::InvalidEnumerationContext,
                       "there is no such enumeration: it was never opened, has come to its end, was closed, "
                       "or nothing was asked of it for too long");
    const std::string& nameSpace = place->second->owner.nameSpace;
    if (!equalNoCase(nameSpace, owner.nameSpace))
        throw CimError(CimStatus::InvalidNamespace,
                       "the enumeration was opened in namespace " + nameSpace + ", not in " +
                           owner.nameSpace);
    return place;
}

Enumerations::Use
Enumerations::use(const std::string& name, const EnumerationOwner& owner, PullContent content)
{
    expire();
    const std::lock_guard lock(_mutex);
    Enumeration& found = *find(name, owner)->second;
    if (found.content != content)
        throw CimError(CimStatus::InvalidEnumerationContext,
                       found.content == PullContent::Paths ? "the enumeration was opened for instance paths"
                                                           : "the enumeration was opened for instances");
    if (found.isBusy)
        throw CimError(CimStatus::Failed, "another operation is pulling from the enumeration");
    found.isBusy = true;
    return {*this, name, found};
}

void Enumerations::close(const std::string& name, const EnumerationOwner& owner)
{
    expire();
    std::unique_ptr<Enumeration> ended; // its file is closed outside the lock
    const std::lock_guard lock(_mutex);
    const auto place = find(name, owner);
    if (place->second->isBusy)
        throw CimError(CimStatus::PullCannotBeAbandoned, "another operation is pulling from the enumeration");
    ended = remove(place);
}

std::unique_ptr<Enumerations::Enumeration> Enumerations::remove(Table::iterator place)
{
    std::unique_ptr<Enumeration> removed = std::move(place->second);
    _table.erase(place);
    _size = _table.size();
    return removed;
}

void Enumerations::expire()
{
    if (_size == 0)
        return;
    std::vector<std::unique_ptr<Enumeration>> ended;
    const Time now = _clock();
    const std::lock_guard lock(_mutex);
    for (auto place = _table.begin(); place != _table.end();)
    {
        const auto next = std::next(place);
        if (!place->second->isBusy && place->second->end <= now)
            ended.push_back(remove(place));
        place = next;
    }
}

void Enumerations::finish(const std::string& name, bool isKept) noexcept
{
    std::unique_ptr<Enumeration> ended;
    const std::lock_guard lock(_mutex);
    const auto place = _table.find(name);
    Enumeration& used = *place->second;
    if (!isKept)
    {
        ended = remove(place);
        return;
    }
    used.spool.rest();
    used.end = _clock() + used.timeout;
    used.isBusy = false;
}

} // namespace cimd
