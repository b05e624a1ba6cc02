// Scoped owner of an instance under construction.
#ifndef COMMON_OWNED_H
#define COMMON_OWNED_H

#include <cimple/cimple.h>

#include <memory>
#include <new>

namespace cimple
{

// Gives back one count: an association may share the instance by then.
struct Instance_Destroyer
{
    void operator()(Instance* instance) const { unref(instance); }
};

// Destroys the instance unless release() handed it on (to a map, a handler, a reference of another instance).
template <class CLASS>
using Owned = std::unique_ptr<CLASS, Instance_Destroyer>;

// A new instance: every property null except those with a default in the schema. Null when it cannot be
// created.
template <class CLASS>
Owned<CLASS> makeWithDefaults()
{
    try
    {
        return Owned<CLASS>(CLASS::create(true));
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

// A new instance with every property null, schema defaults included. Null when it cannot be created.
template <class CLASS>
Owned<CLASS> makeNull()
{
    Owned<CLASS> instance = makeWithDefaults<CLASS>();
    if (instance)
        __set_null_flags(instance.get(), true, true, 1);
    return instance;
}

} // namespace cimple

#endif
