// The locks that one load takes: a list of maps in lock order, fixed at compile time, and its guard.
#ifndef COMMON_LOCK_SET_H
#define COMMON_LOCK_SET_H

#include "common/map_locks.h"

#include <array>
#include <optional>

namespace cimple
{

// Maps without duplicates, by rank.
class Map_List
{
  public:
    static constexpr std::size_t kCapacity = 8;

    constexpr void add(providerEnum_t map)
    {
        std::size_t place = 0;
        while (place < _size && mapRank(_maps[place]) <= mapRank(map))
        {
            if (_maps[place] == map)
                return;
            ++place;
        }
        for (std::size_t i = _size; i > place; --i)
            _maps[i] = _maps[i - 1];
        _maps[place] = map;
        ++_size;
    }
    constexpr void add(const Map_List& other)
    {
        for (std::size_t i = 0; i < other._size; ++i)
            add(other._maps[i]);
    }

    constexpr std::size_t size() const { return _size; }
    constexpr providerEnum_t operator[](std::size_t i) const { return _maps[i]; }

  private:
    providerEnum_t _maps[kCapacity] = {};
    std::size_t _size = 0;
};

// Holds the write locks of a list, taken in its order and given back in reverse. Like each of them, it goes
// on without those that the thread holds already.
class Map_List_WrLock
{
  public:
    explicit Map_List_WrLock(const Map_List& list)
    {
        for (std::size_t i = 0; i < list.size(); ++i)
            _locks[i].emplace(list[i]);
    }

  private:
    // Elements of an array are destroyed last to first.
    std::array<std::optional<MapWrLock>, Map_List::kCapacity> _locks;
};

} // namespace cimple

#endif
