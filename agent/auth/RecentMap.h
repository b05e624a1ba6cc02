// A map of a fixed size that forgets what was not touched for the longest time.
#ifndef AGENT_AUTH_RECENTMAP_H
#define AGENT_AUTH_RECENTMAP_H

#include <chrono>
#include <cstddef>
#include <list>
#include <map>
#include <string>
#include <utility>

namespace cimd
{

// Values by text. Not safe for several threads at once.
template <class Value>
class RecentMap
{
  public:
    using Time = std::chrono::steady_clock::time_point;

    // An entry lives for `lifetime` after it was last put; `capacity` is at least 1.
    RecentMap(std::size_t capacity, std::chrono::milliseconds lifetime)
        : _capacity(capacity), _lifetime(lifetime)
    {
    }

    // Null when there is none, or none any more.
    Value* find(const std::string& key, Time now)
    {
        const auto found = _places.find(key);
        if (found == _places.end())
            return nullptr;
        if (now < found->second->until)
            return &found->second->value;
        erase(found);
        return nullptr;
    }

    // Adds or replaces a value, at the cost of the oldest one if there is no room.
    void put(const std::string& key, Value value, Time now)
    {
        erase(key);
        if (_places.size() == _capacity)
            erase(_places.find(_entries.front().key));
        _entries.push_back({key, std::move(value), now + _lifetime});
        _places.emplace(key, std::prev(_entries.end()));
    }

    void erase(const std::string& key)
    {
        const auto found = _places.find(key);
        if (found != _places.end())
            erase(found);
    }

  private:
    struct Entry
    {
        std::string key;
        Value value;
        Time until;
    };
    using Places = std::map<std::string, typename std::list<Entry>::iterator>;

    void erase(typename Places::iterator place)
    {
        _entries.erase(place->second);
        _places.erase(place);
    }

    const std::size_t _capacity;
    const std::chrono::milliseconds _lifetime;
    std::list<Entry> _entries; // the one put longest ago first
    Places _places;
};

} // namespace cimd

#endif
