// Comparing instances: by keys, in full, and by class.
#include <algorithm>
#include <cimple/Class_Plan.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
bool related(const Meta_Class* mc1, const Meta_Class* mc2)
{
    return is_subclass(mc1, mc2) || is_subclass(mc2, mc1);
}

// Compares two references, scalar or array, by a function that compares two instances.
template <class Equal>
bool refs_equal(
    const Instance* a, const Meta_Reference* ra, const Instance* b, const Meta_Reference* rb, Equal equal)
{
    const auto both_null_or_equal = [&](const Instance* va, const Instance* vb)
    { return va && vb ? equal(va, vb) : va == vb; };
    if (ra->subscript == 0)
        return both_null_or_equal(__ref_of(a, ra), __ref_of(b, rb));

    const Property<Array_Instance>& pa = __array_ref_of(a, ra);
    const Property<Array_Instance>& pb = __array_ref_of(b, rb);
    if ((pa.null != 0) != (pb.null != 0) || pa.value.size() != pb.value.size())
        return false;
    for (size_t i = 0; i < pa.value.size(); i++)
        if (!both_null_or_equal(pa.value[i], pb.value[i]))
            return false;
    return true;
}

bool key_feature_eq(const Instance* a, const Meta_Feature* fa, const Instance* b, const Meta_Feature* fb)
{
    if (!fb || !is_key(fb))
        return false;
    if (const Meta_Property* pa = as_property(fa))
    {
        const Meta_Property* const pb = as_property(fb);
        return pb && pa->type == pb->type && pa->subscript == pb->subscript &&
               property_eq(pa, __property_of(a, pa), __property_of(b, pb));
    }
    const Meta_Reference* const ra = as_reference(fa);
    const Meta_Reference* const rb = as_reference(fb);
    return ra && rb && ra->subscript == rb->subscript && related(ra->meta_class, rb->meta_class) &&
           refs_equal(a, ra, b, rb, key_eq);
}
} // namespace

bool key_eq(const Instance* a, const Instance* b)
{
    const std::vector<Key_Plan>& keys = plan_of(a->meta_class).keys();
    const bool same_class = a->meta_class == b->meta_class;
    return a == b ||
           std::all_of(keys.begin(),
                       keys.end(),
                       [&](const Key_Plan& key)
                       {
                           return key_feature_eq(a,
                                                 key.feature,
                                                 b,
                                                 same_class ? key.feature
                                                            : find_counterpart(b->meta_class, key.feature));
                       });
}

bool identical(const Instance* a, const Instance* b)
{
    if (a->meta_class != b->meta_class || a->__name_space != b->__name_space)
        return false;
    for (const Meta_Feature* mf : features_of(a->meta_class))
    {
        if (const Meta_Property* mp = as_property(mf))
        {
            if (!property_eq(mp, __property_of(a, mp), __property_of(b, mp)))
                return false;
        }
        else if (const Meta_Reference* mr = as_reference(mf))
        {
            if (!refs_equal(a, mr, b, mr, identical))
                return false;
        }
    }
    return true;
}

bool keys_non_null(const Instance* instance)
{
    for (const Key_Plan& key : plan_of(instance->meta_class).keys())
    {
        if (const Meta_Property* mp = as_property(key.feature))
        {
            if (null_of(mp, __property_of(instance, mp)) != 0)
                return false;
            continue;
        }
        const Meta_Reference* const mr = known_reference(key.feature);
        if (mr->subscript == 0 ? !__ref_of(instance, mr) : __array_ref_of(instance, mr).null != 0)
            return false;
    }
    return true;
}

Instance* __cast(const Meta_Class* meta_class, const Instance* instance)
{
    return instance && is_subclass(meta_class, instance->meta_class) ? const_cast<Instance*>(instance)
                                                                     : nullptr;
}

CIMPLE_NAMESPACE_END
