// Instances as models: null flags as masks, and changes to everything an instance refers to.
#include <cimple/Features.h>
#include <cimple/Strings.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
// 0, or -1 for a method.
int ask_for(Instance* instance, const Meta_Feature* mf)
{
    if (const Meta_Property* mp = as_property(mf))
        null_of(mp, __property_of(instance, mp)) = 0;
    else if (const Meta_Reference* mr = as_reference(mf))
    {
        if (mr->subscript != 0)
            __array_ref_of(instance, mr).null = 0;
        else if (Instance*& value = __ref_of(instance, mr); !value)
            value = create(mr->meta_class);
    }
    else
        return -1;
    return 0;
}
} // namespace

void __set_null_flags(const Instance* instance, bool include_keys, bool include_non_keys, uint8 flag)
{
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        const Meta_Property* const mp = as_property(mf);
        if (mp && (is_key(mf) ? include_keys : include_non_keys))
            null_of(mp, __property_of(instance, mp)) = flag;
    }
}

int filter_properties(Instance* instance, const char* const* properties, boolean keepKeys)
{
    if (!properties)
    {
        de_nullify_properties(instance);
        return 0;
    }
    if (keepKeys)
        nullify_non_keys(instance);
    else
        nullify_properties(instance);

    for (; *properties; properties++)
    {
        const Meta_Feature* const mf = find_feature(instance->meta_class, *properties);
        if (mf && !is_key(mf) && ask_for(instance, mf) != 0)
            return -1;
    }
    return 0;
}

void __create_refs(Instance* instance)
{
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        const Meta_Reference* const mr = as_reference(mf);
        if (!mr || mr->subscript != 0)
            continue;
        Instance*& value = __ref_of(instance, mr);
        if (!value)
            value = create(mr->meta_class, true);
    }
}

void __visit(Instance* instance, __Visit_Proc proc, void* client_data)
{
    if (!instance)
        return;
    proc(instance, client_data);
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        const Meta_Reference* const mr = as_reference(mf);
        if (!mr)
            continue;
        if (mr->subscript == 0)
        {
            __visit(__ref_of(instance, mr), proc, client_data);
            continue;
        }
        Array_Instance& elements = __array_ref_of(instance, mr).value;
        for (size_t i = 0; i < elements.size(); i++)
            __visit(elements[i], proc, client_data);
    }
}

void __set_name_space_recursive(Instance* instance, const char* name_space, bool force)
{
    struct Request
    {
        String name_space;
        bool force;
    } request = {name_space, force};
    __visit(
        instance,
        [](Instance* visited, void* data)
        {
            const Request& r = *static_cast<const Request*>(data);
            if (r.force || visited->__name_space.empty())
                visited->__name_space = r.name_space;
        },
        &request);
}

CIMPLE_NAMESPACE_END
