// Two queues of guests.
#include "agent/http/Admission.h"

#include <algorithm>

namespace cimd
{

namespace
{

template <class Accept>
const Admission::Guest* first(const std::list<Admission::Guest>& guests, Accept accept)
{
    const auto found =
        std::find_if(guests.begin(),
                     guests.end(),
                     [&](const Admission::Guest& guest) { return !guest.isBusy && accept(guest); });
    return found != guests.end() ? &*found : nullptr;
}

} // namespace

const Admission::Guest* Admission::next(Time now) const
{
    const auto anybody = [](const Guest&) { return true; };
    for (const auto* guests : {&_strangers, &_known})
        if (const Guest* guest = first(*guests, anybody))
            return guest;
    const Guest* slowest = nullptr;
    for (const auto* guests : {&_strangers, &_known})
        for (const Guest& guest : *guests)
            if (guest.behindSince <= now - _patience &&
                (slowest == nullptr || guest.behindSince < slowest->behindSince))
                slowest = &guest;
    return slowest;
}

const Admission::Guest* Admission::next(const std::string& address) const
{
    return first(_strangers, [&](const Guest& guest) { return guest.address == address; });
}

Admission::Place Admission::enter(std::uint64_t id, const std::string& address)
{
    ++_byAddress[address];
    return _strangers.insert(_strangers.end(), Guest{id, address});
}

void Admission::served(Place place)
{
    _known.splice(_known.end(), place->isKnown ? _known : _strangers, place);
    place->isKnown = true;
}

void Admission::leave(Place place)
{
    const auto entry = _byAddress.find(place->address);
    if (--entry->second == 0)
        _byAddress.erase(entry);
    (place->isKnown ? _known : _strangers).erase(place);
}

std::size_t Admission::countOf(const std::string& address) const
{
    const auto entry = _byAddress.find(address);
    return entry != _byAddress.end() ? entry->second : 0;
}

std::string Admission::most() const
{
    const auto most = std::max_element(_byAddress.begin(),
                                       _byAddress.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == _byAddress.end() ? "" : most->first + " (" + std::to_string(most->second) + ')';
}

} // namespace cimd
