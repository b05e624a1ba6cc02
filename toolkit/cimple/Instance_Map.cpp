// Instance maps: an array in order of insertion and an index of keys beside it.
#include <cimple/Instance_Map.h>
#include <cimple/Key_Index.h>
#include <cimple/Ref.h>

CIMPLE_NAMESPACE_BEGIN

Instance_Map_Base::Instance_Map_Base(const Meta_Class* meta_class)
    : _meta_class(meta_class), _index(std::make_unique<Key_Index>())
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
    _index->clear();
    for (size_t i = 0; i < released.size(); i++)
        unref(released[i]);
}

size_t Instance_Map_Base::_insert(Instance* instance)
{
    const Key_Index::Digest digest = Key_Index::digest_of(instance);
    if (_index->find(_instances, instance, digest) != size_t(-1))
        return size_t(-1);
    const size_t pos = _instances.size();
    _instances.append(instance);
    try
    {
        _index->add(instance, digest);
    }
    catch (...)
    {
        _instances.remove(pos);
        throw;
    }
    return pos;
}

size_t Instance_Map_Base::_find(const Instance* instance) const
{
    return _index->find(_instances, instance, Key_Index::digest_of(instance));
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
    _index->remove(pos);
    _instances.remove(pos);
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
Instance_Map_Base::_enum_instances(const Instance*, Enum_Instances_Proc proc, void* client_data) const
{
    for (size_t i = 0; i < _instances.size(); i++)
    {
        ref(_instances[i]);
        if (!proc(_instances[i], ENUM_INSTANCES_OK, client_data))
            break;
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
    unref(std::exchange(_instances[pos], modified.steal()));
    return MODIFY_INSTANCE_OK;
}

CIMPLE_NAMESPACE_END
