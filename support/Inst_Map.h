// The instance map of one class: the toolkit's map with its operations open to providers.
#ifndef SUPPORT_INST_MAP_H
#define SUPPORT_INST_MAP_H

#include "support/Change_Check.h"

#include <cimple/cimple.h>

#include <utility>

namespace cimple
{

// Owns its instances. Not safe by itself: guarded by the class' lock in VRAX_Maps. An instance must not be
// changed while it is in the map; debug builds check that when it leaves.
class Inst_Map : public Instance_Map_Base
{
  public:
    explicit Inst_Map(const Meta_Class* metaClass) : Instance_Map_Base(metaClass) {}
    ~Inst_Map() { _check.allLeft(_instances); }
    Inst_Map(const Inst_Map&) = delete;
    Inst_Map& operator=(const Inst_Map&) = delete;

    using Instance_Map_Base::_enum_instances;
    using Instance_Map_Base::_find;
    using Instance_Map_Base::_get_instance;
    using Instance_Map_Base::_lookup;

    std::size_t _insert(Instance* instance)
    {
        Change_Check::Copy copy = Change_Check::copyOf(instance);
        _check.expectOne();
        const std::size_t position = Instance_Map_Base::_insert(instance);
        if (position != kNone)
            _check.added(std::move(copy));
        return position;
    }
    Create_Instance_Status _create_instance(const Instance* instance)
    {
        Change_Check::Copy copy = Change_Check::copyOf(instance);
        _check.expectOne();
        const Create_Instance_Status status = Instance_Map_Base::_create_instance(instance);
        if (status == CREATE_INSTANCE_OK)
            _check.added(std::move(copy));
        return status;
    }
    Delete_Instance_Status _delete_instance(const Instance* instance)
    {
        const std::size_t position = checkedPosition(instance);
        const Delete_Instance_Status status = Instance_Map_Base::_delete_instance(instance);
        if (status == DELETE_INSTANCE_OK)
            _check.left(position);
        return status;
    }
    // Puts a changed copy in the place of the cached instance, whatever the toolkit's own map does; those who
    // hold that one keep it as it was.
    Modify_Instance_Status _modify_instance(const Instance* model, const Instance* instance)
    {
        const std::size_t position = checkedPosition(instance);
        if (position == kNone)
            return MODIFY_INSTANCE_NOT_FOUND;
        Ref<Instance> changed(clone(_instances[position]));
        copy(changed.ptr(), instance, model);
        _check.replaced(position, Change_Check::copyOf(changed.ptr()));
        unref(std::exchange(_instances[position], changed.steal()));
        return MODIFY_INSTANCE_OK;
    }
    void _remove(std::size_t position)
    {
        if (position >= size())
            return;
        _check.leaving(position, _instances[position]);
        Instance_Map_Base::_remove(position);
        _check.left(position);
    }

    std::size_t size() const { return _instances.size(); }
    // The instance at `position`, in order of insertion; owned by the map.
    Instance* at(std::size_t position) const { return _instances[position]; }

    void clear()
    {
        _check.allLeft(_instances);
        Instance_Map_Base::clear();
    }

    // Empties the map without releasing the instances: the caller owns a count on each, in order of
    // insertion.
    Array<Instance*> takeAll()
    {
        _check.allLeft(_instances);
        Array<Instance*> taken;
        taken.swap(_instances);
        Instance_Map_Base::clear(); // the index
        return taken;
    }

  private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // Where the instance with these keys is that is about to leave; kNone when there is none.
    std::size_t checkedPosition(const Instance* keys) const
    {
        const std::size_t position = _find(keys);
        if (position != kNone)
            _check.leaving(position, _instances[position]);
        return position;
    }

    Change_Check _check;
};

} // namespace cimple

#endif
