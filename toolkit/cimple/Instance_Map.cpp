// Instance maps: an array in order of insertion, and beside it indexes of keys and of ends.
#include <cimple/End_Index.h>
#include <cimple/Instance_Map.h>
#include <cimple/Key_Index.h>
#include <cimple/Ref.h>

CIMPLE_NAMESPACE_BEGIN

struct Instance_Map_Base::Index
{
    explicit Index(const Meta_Class* meta_class) : ends(meta_class) {}

    Slots slots;
    Key_Index keys;
    End_Index ends;
};

Instance_Map_Base::Instance_Map_Base(const Meta_Class* meta_class)
    : _meta_class(meta_class), _index(std::make_unique<Index>(meta_class))
{
}

Instance_Map_Base::~Instance_Map_Base()
{
    clear();
}

void Instance_Map_Base::clear()
{
    Array<Instance*> released;
    released.swap(_instances);
    _index->slots.clear();
    _index->keys.clear();
    _index->ends.forget();
    _index->ends.outdate();
    for (size_t i = 0; i < released.size(); i++)
        unref(released[i]);
}

size_t Instance_Map_Base::_insert(Instance* instance)
{
    Index& index = *_index;
    const Digest digest = digest_of(instance, &index.ends.learn(instance));
    if (index.keys.find(_instances, index.slots, instance, digest) != size_t(-1))
    {
        index.ends.forget();
        return size_t(-1);
    }
    const size_t pos = _instances.size();
    _instances.append(instance);
    uint32 slot = 0;
    try
    {
        slot = index.slots.add();
        try
        {
            index.keys.add(instance, digest);
        }
        catch (...)
        {
            index.slots.take_back();
            throw;
        }
    }
    catch (...)
    {
        index.ends.forget();
        _instances.remove(pos);
        throw;
    }
    index.ends.add(instance, slot);
    return pos;
}

size_t Instance_Map_Base::_find(const Instance* instance) const
{
    return _index->keys.find(_instances, _index->slots, instance, digest_of(instance));
}

Instance* Instance_Map_Base::_lookup(const Instance* instance) const
{
    const size_t pos = _find(instance);
    return pos == size_t(-1) ? nullptr : _instances[pos];
}

void Instance_Map_Base::_remove(size_t pos)
{
    if (pos >= _instances.size())
        return;
    Index& index = *_index;
    const uint32 slot = index.slots.at(pos);
    index.slots.remove(pos);
    index.keys.remove(slot);
    index.ends.forget();
    _instances.remove(pos);
    if (!index.slots.sparse())
        return;
    index.keys.renumber(index.slots);
    index.slots.renumber();
    index.ends.outdate();
}

Get_Instance_Status Instance_Map_Base::_get_instance(const Instance* model, Instance*& instance) const
{
    const Instance* const found = _lookup(model);
    if (!found)
        return GET_INSTANCE_NOT_FOUND;
    instance = clone(found);
    return GET_INSTANCE_OK;
}

Enum_Instances_Status
Instance_Map_Base::_enum_instances(const Instance* model, Enum_Instances_Proc proc, void* client_data) const
{
    const auto hand_out = [&](size_t pos)
    {
        ref(_instances[pos]);
        return proc(_instances[pos], ENUM_INSTANCES_OK, client_data);
    };
    End_Index::Selection selection;
    if (_index->ends.select(_instances, _index->slots, model, selection))
    {
        for (uint32 slot; selection.next(slot);)
        {
            const size_t pos = _index->slots.position_of(slot);
            if (pos != size_t(-1) && !hand_out(pos))
                break;
        }
        return ENUM_INSTANCES_OK;
    }
    for (size_t pos = 0; pos < _instances.size() && hand_out(pos); pos++)
    {
    }
    return ENUM_INSTANCES_OK;
}

Create_Instance_Status Instance_Map_Base::_create_instance(const Instance* instance)
{
    Ref<Instance> copied(clone(instance));
    if (_insert(copied.ptr()) == size_t(-1))
        return CREATE_INSTANCE_DUPLICATE;
    copied.steal(); // the map's
    return CREATE_INSTANCE_OK;
}

Delete_Instance_Status Instance_Map_Base::_delete_instance(const Instance* instance)
{
    const size_t pos = _find(instance);
    if (pos == size_t(-1))
        return DELETE_INSTANCE_NOT_FOUND;
    Instance* const found = _instances[pos];
    _remove(pos);
    unref(found);
    return DELETE_INSTANCE_OK;
}

Modify_Instance_Status Instance_Map_Base::_modify_instance(const Instance* model, const Instance* instance)
{
    const size_t pos = _find(instance);
    if (pos == size_t(-1))
        return MODIFY_INSTANCE_NOT_FOUND;
    Ref<Instance> modified(clone(_instances[pos]));
    copy(modified.ptr(), instance, model);
    _index->ends.forget();
    unref(std::exchange(_instances[pos], modified.steal()));
    return MODIFY_INSTANCE_OK;
}

CIMPLE_NAMESPACE_END
