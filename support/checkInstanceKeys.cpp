// The check that an instance can be told from all others before it enters its map.
#include "support/checkInstanceKeys.h"

#include <cimple/cimple.h>

namespace cimple
{

namespace
{

template <class T>
const T& fieldAt(const Instance* instance, std::size_t offset)
{
    return *static_cast<const T*>(static_cast<const void*>(reinterpret_cast<const char*>(instance) + offset));
}

bool isPopulated(const Instance* instance, const Meta_Feature* feature)
{
    if (feature->flags & CIMPLE_FLAG_PROPERTY)
    {
        const Meta_Property* property = reinterpret_cast<const Meta_Property*>(feature);
        const bool isText = property->type == STRING && property->subscript == 0;
        return !isText || !fieldAt<Property<String>>(instance, property->offset).value.empty();
    }
    if (feature->flags & CIMPLE_FLAG_REFERENCE)
    {
        const Meta_Reference* reference = reinterpret_cast<const Meta_Reference*>(feature);
        return checkInstanceKeys(fieldAt<const Instance*>(instance, reference->offset));
    }
    return true;
}

} // namespace

bool checkInstanceKeys(const Instance* instance)
{
    if (!keys_non_null(instance))
        return false;
    const Meta_Class* metaClass = instance->meta_class;
    for (std::size_t i = 0; i < metaClass->num_meta_features; ++i)
    {
        const Meta_Feature* feature = metaClass->meta_features[i];
        if ((feature->flags & CIMPLE_FLAG_KEY) && !isPopulated(instance, feature))
            return false;
    }
    return true;
}

} // namespace cimple
