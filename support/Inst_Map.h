// The instance map of one class: the toolkit's map with its operations open to providers.
#ifndef SUPPORT_INST_MAP_H
#define SUPPORT_INST_MAP_H

#include <cimple/cimple.h>

namespace cimple
{

// Owns its instances. Not safe by itself: guarded by the class' lock in VRAX_Maps.
class Inst_Map : public Instance_Map_Base
{
  public:
    explicit Inst_Map(const Meta_Class* metaClass) : Instance_Map_Base(metaClass) {}

    using Instance_Map_Base::_create_instance;
    using Instance_Map_Base::_delete_instance;
    using Instance_Map_Base::_enum_instances;
    using Instance_Map_Base::_find;
    using Instance_Map_Base::_get_instance;
    using Instance_Map_Base::_insert;
    using Instance_Map_Base::_lookup;
    using Instance_Map_Base::_modify_instance;
    using Instance_Map_Base::_remove;

    std::size_t size() const { return _instances.size(); }
    // The instance at `position`, in order of insertion; owned by the map.
    Instance* at(std::size_t position) const { return _instances[position]; }

    // Empties the map. What was in it is gone, so the map is no longer complete.
    void clear()
    {
        _complete = false;
        Instance_Map_Base::clear();
    }

    // Empties the map without releasing the instances: the caller owns a count on each, in order of
    // insertion.
    Array<Instance*> takeAll()
    {
        _complete = false;
        Array<Instance*> taken;
        taken.swap(_instances);
        Instance_Map_Base::clear(); // the index
        return taken;
    }

    // True from the end of a successful load until the map is cleared or a load fails: what the map holds is
    // then all there is, and may be served, be it fresh or not. A request that finds the map incomplete has
    // lost a race with an unload or a failed load and must load again.
    bool complete() const { return _complete; }
    void setComplete(bool complete) { _complete = complete; }

  private:
    bool _complete = false;
};

} // namespace cimple

#endif
