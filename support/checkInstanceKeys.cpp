// The check that an instance can be told from all others before it enters its map.
#include "support/checkInstanceKeys.h"

#include <cimple/cimple.h>

namespace cimple
{

namespace
{

bool isPopulated(const Instance* instance, const Meta_Feature* feature)
{
    if (feature->flags & CIMPLE_FLAG_PROPERTY)
    {
        const Meta_Property* property = reinterpret_cast<const Meta_Property*>(feature);
        const bool isText = property->type == STRING && property->subscript == 0;
        return !isText ||
               !static_cast<const Property<String>*>(__property_of(instance, property))->value.empty();
    }
    if (feature->flags & CIMPLE_FLAG_REFERENCE)
    {
        const Meta_Reference* reference = reinterpret_cast<const Meta_Reference*>(feature);
        return checkInstanceKeys(__ref_of(instance, reference));
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
