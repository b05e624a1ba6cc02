// Typed access to instance maps: what loads read from other maps and write into their own.
#ifndef COMMON_MAP_ACCESS_H
#define COMMON_MAP_ACCESS_H

#include "common/owned.h"
#include "support/VRAX_Maps.h"

namespace cimple
{

// A loaded map as a row of instances, in order of insertion. The caller holds the map's lock; the instances
// stay the map's.
template <class CLASS>
class Map_View
{
  public:
    Map_View() : _map(VRAX_Maps::getInstance()->map<CLASS>()) {}

    class Iterator
    {
      public:
        Iterator(const Inst_Map& map, std::size_t position) : _map(map), _position(position) {}
        const CLASS* operator*() const { return static_cast<const CLASS*>(_map.at(_position)); }
        Iterator& operator++()
        {
            ++_position;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return _position != other._position; }

      private:
        const Inst_Map& _map;
        std::size_t _position;
    };

    std::size_t size() const { return _map.size(); }
    Iterator begin() const { return Iterator(_map, 0); }
    Iterator end() const { return Iterator(_map, _map.size()); }
    // Null when the map is empty.
    const CLASS* first() const { return _map.size() > 0 ? *begin() : nullptr; }

  private:
    const Inst_Map& _map;
};

// What a map held before the load that builds it again, out of the map. Released one by one as the new
// instances come, and at the latest with this object: a new instance then finds memory that is still in the
// processor's caches, as are the texts that it shares with the former one. In a large fabric half of the time
// of a load would otherwise go by waiting for memory.
class Former_Instances
{
  public:
    // Empties the map. The caller holds its write lock.
    explicit Former_Instances(Inst_Map& map) : _instances(map.takeAll()) {}
    ~Former_Instances()
    {
        while (_next < _instances.size())
            releaseNext();
    }
    Former_Instances(const Former_Instances&) = delete;
    Former_Instances& operator=(const Former_Instances&) = delete;

    void releaseNext()
    {
        if (_next < _instances.size())
            unref(_instances[_next++]);
    }

  private:
    Array<Instance*> _instances;
    std::size_t _next = 0;
};

// The map that a load fills. The caller holds the map's write lock.
template <class CLASS>
class Map_Writer
{
  public:
    // `former`: what to release in exchange for new instances.
    explicit Map_Writer(Former_Instances* former = nullptr)
        : _map(VRAX_Maps::getInstance()->map<CLASS>()), _former(former)
    {
    }

    // Hands the instance to the map. False when an instance with equal keys is already there; the caller
    // then still owns it.
    bool insert(Owned<CLASS>& instance)
    {
        if (_map._insert(instance.get()) == static_cast<std::size_t>(-1))
            return false;
        instance.release();
        if (_former != nullptr)
            _former->releaseNext();
        return true;
    }

    // Whether an instance with the keys of this one is there already.
    bool contains(const CLASS& keys) const { return _map._lookup(&keys) != nullptr; }

    std::size_t size() const { return _map.size(); }

  private:
    Inst_Map& _map;
    Former_Instances* _former;
};

} // namespace cimple

#endif
