// Typed access to instance maps. A map is read through a Map_View and filled through a Map_Writer, and these
// are only to be had from a guard that holds the map's lock.
#ifndef COMMON_MAP_ACCESS_H
#define COMMON_MAP_ACCESS_H

#include "common/Owned.h"
#include "common/lock_set.h"
#include "support/VRAX_Maps.h"

#include <type_traits>

namespace cimple
{

// A map as a row of instances, in order of insertion. Valid as long as the guard that it came from; the
// instances stay the map's.
template <class CLASS>
class Map_View
{
  public:
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
    // The instance with the keys of this one, or null.
    const CLASS* find(const CLASS& keys) const { return static_cast<const CLASS*>(_map._lookup(&keys)); }
    // The same for a reference that came with a request: of the class or a superclass of it, or null.
    const CLASS* findReferred(const Instance* keys) const
    {
        if (keys == nullptr || !is_subclass(keys->meta_class, &CLASS::static_meta_class))
            return nullptr;
        return static_cast<const CLASS*>(_map._lookup(keys));
    }

  private:
    template <class>
    friend class Map_Guard;
    explicit Map_View(const Inst_Map& map) : _map(map) {}

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

// The map that a load fills.
template <class CLASS>
class Map_Writer
{
  public:
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
    template <class>
    friend class Map_Guard;
    Map_Writer(Inst_Map& map, Former_Instances* former) : _map(map), _former(former) {}

    Inst_Map& _map;
    Former_Instances* _former; // what to release in exchange for new instances; may be null
};

// Makes views and writers; for the guards below.
template <class CLASS>
class Map_Guard
{
  protected:
    static Inst_Map& map() { return VRAX_Maps::getInstance()->map<CLASS>(); }
    static Map_View<CLASS> view() { return Map_View<CLASS>(map()); }
    static Map_Writer<CLASS> writer(Former_Instances* former) { return Map_Writer<CLASS>(map(), former); }
};

// Holds the read lock of the map of CLASS.
template <class CLASS>
class Read_Guard : private Map_Guard<CLASS>
{
  public:
    Read_Guard() : _lock(Map_Index<CLASS>::value) {}

    const Inst_Map& map() const { return Map_Guard<CLASS>::map(); }
    Map_View<CLASS> view() const { return Map_Guard<CLASS>::view(); }

  private:
    MapRdLock _lock;
};

// Holds the write lock of the map of CLASS, unless the thread holds it further out.
template <class CLASS>
class Write_Guard : private Map_Guard<CLASS>
{
  public:
    Write_Guard() : _lock(Map_Index<CLASS>::value) {}

    Inst_Map& map() { return Map_Guard<CLASS>::map(); }
    Map_View<CLASS> view() const { return Map_Guard<CLASS>::view(); }
    Map_Writer<CLASS> writer(Former_Instances* former = nullptr) { return Map_Guard<CLASS>::writer(former); }

    // Changes to a loaded map, after the switch has been changed so. The map stays as fresh as it is, and
    // what is built from it is built again. False, and nothing is done, when the keys are taken, or not
    // there.
    bool insert(Owned<CLASS>& instance) { return noticed(writer().insert(instance)); }
    bool remove(const CLASS& keys) { return noticed(map()._delete_instance(&keys) == DELETE_INSTANCE_OK); }
    // Gives the cached instance the values of `request` that `model` carries. The instance is replaced:
    // requests being answered keep the former one.
    bool change(const CLASS& model, const CLASS& request)
    {
        return noticed(map()._modify_instance(&model, &request) == MODIFY_INSTANCE_OK);
    }

  private:
    static bool noticed(bool done)
    {
        if (done)
            VRAX_Maps::getInstance()->InstMapChanged(Map_Index<CLASS>::value);
        return done;
    }

    MapWrLock _lock;
};

// Holds the write locks of the map of OWN, of those of ENDS and of all others that the list names.
template <class OWN, class... ENDS>
class Composite_Guard : private Map_Guard<OWN>, private Map_Guard<ENDS>...
{
  public:
    explicit Composite_Guard(const Map_List& list) : _locks(list) {}

    Inst_Map& map() { return Map_Guard<OWN>::map(); }
    Map_Writer<OWN> writer(Former_Instances* former) { return Map_Guard<OWN>::writer(former); }

    template <class END>
    Map_View<END> view() const
    {
        static_assert(std::is_same_v<END, OWN> || (std::is_same_v<END, ENDS> || ...),
                      "only these maps are locked");
        return Map_Guard<END>::view();
    }

  private:
    Map_List_WrLock _locks;
};

} // namespace cimple

#endif
