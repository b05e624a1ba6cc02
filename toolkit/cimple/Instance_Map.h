// A collection of instances found by their keys.
#ifndef CIMPLE_INSTANCE_MAP_H
#define CIMPLE_INSTANCE_MAP_H

#include <cimple/Instance.h>
#include <cimple/Provider.h>
#include <memory>

CIMPLE_NAMESPACE_BEGIN

// Owns one count on each instance and keeps them in the order of insertion. Keys of an instance must not
// change while it is in a map, nor those of objects that it refers to. Look-ups take a time that does not
// depend on the size. Functions that do not change the map may run in parallel.
//
// An instance is found by a model whose keys equal its own; the model may be of a related class.
class CIMPLE_CIMPLE_LINKAGE Instance_Map_Base
{
  public:
    explicit Instance_Map_Base(const Meta_Class* meta_class);
    ~Instance_Map_Base();
    Instance_Map_Base(const Instance_Map_Base&) = delete;
    Instance_Map_Base& operator=(const Instance_Map_Base&) = delete;

    // Releases every instance; those still held elsewhere live on.
    void clear();

  protected:
    // Position of the new instance, whose count the map takes over; (size_t)-1, and the caller keeps it, if
    // its keys are there already.
    size_t _insert(Instance* instance);

    // Position of the first instance with equal keys, or (size_t)-1.
    size_t _find(const Instance* instance) const;

    // That instance, borrowed, or null.
    Instance* _lookup(const Instance* instance) const;

    // Takes the slot out without releasing the instance; the order of the rest stays. Nothing if out of
    // range.
    void _remove(size_t pos);

    // OK and a copy that belongs to the caller, or NOT_FOUND and `instance` as it was.
    Get_Instance_Status _get_instance(const Instance* model, Instance*& instance) const;

    // Hands every instance in order to `proc`, shared and not to be changed, until it answers false. `proc`
    // must not change the map. Does not make the closing call. Always OK.
    //
    // A model of an association that refers to an object asks only for the instances that refer to it, in one
    // of the roles in which the model does. If the roles are keys, this takes a time that depends on their
    // number and not on the size, but for the first time. A few others may come with them.
    Enum_Instances_Status
    _enum_instances(const Instance* model, Enum_Instances_Proc proc, void* client_data) const;

    // Keeps a copy.
    Create_Instance_Status _create_instance(const Instance* instance);

    Delete_Instance_Status _delete_instance(const Instance* instance);

    // Copies the properties that are not null in the model. An instance is never changed in place: a changed
    // copy takes its place, and those who hold the old one keep it as it was.
    Modify_Instance_Status _modify_instance(const Instance* model, const Instance* instance);

    const Meta_Class* _meta_class;
    Array<Instance*> _instances;

  private:
    struct Index;

    std::unique_ptr<Index> _index;
};

template <class CLASS>
class Instance_Map : public Instance_Map_Base
{
  public:
    Instance_Map() : Instance_Map_Base(&CLASS::static_meta_class) {}

    size_t insert(CLASS* instance) { return _insert(instance); }
    size_t find(const CLASS* instance) const { return _find(instance); }
    CLASS* lookup(const CLASS* instance) const { return static_cast<CLASS*>(_lookup(instance)); }
    void remove(size_t pos) { _remove(pos); }
    size_t size() const { return _instances.size(); }
    CLASS* operator[](size_t pos) { return static_cast<CLASS*>(_instances[pos]); }
    const CLASS* operator[](size_t pos) const { return static_cast<const CLASS*>(_instances[pos]); }

    Get_Instance_Status get_instance(const CLASS* model, CLASS*& instance)
    {
        Instance* found = nullptr;
        const Get_Instance_Status status = _get_instance(model, found);
        if (status == GET_INSTANCE_OK)
            instance = static_cast<CLASS*>(found);
        return status;
    }
    Enum_Instances_Status enum_instances(const CLASS* model, Enum_Instances_Handler<CLASS>* handler)
    {
        return _enum_instances(model, handler->_proc, handler->_client_data);
    }
    Create_Instance_Status create_instance(const CLASS* instance) { return _create_instance(instance); }
    Delete_Instance_Status delete_instance(const CLASS* instance) { return _delete_instance(instance); }
    Modify_Instance_Status modify_instance(const CLASS* model, const CLASS* instance)
    {
        return _modify_instance(model, instance);
    }
};

CIMPLE_NAMESPACE_END

#endif
