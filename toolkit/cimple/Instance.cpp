// The life of instances: creation, copies, reference counts, destruction.
#include <cimple/Class_Plan.h>
#include <memory>

CIMPLE_NAMESPACE_BEGIN

namespace
{
struct Destroyer
{
    void operator()(Instance* instance) const { destroy(instance); }
};

// Holds an instance under construction.
typedef std::unique_ptr<Instance, Destroyer> Owner;

// References that are released unless they are swapped into an instance.
struct Owned_Refs
{
    Owned_Refs() = default;
    ~Owned_Refs()
    {
        for (size_t i = 0; i < refs.size(); i++)
            unref(refs[i]);
    }
    Owned_Refs(const Owned_Refs&) = delete;
    Owned_Refs& operator=(const Owned_Refs&) = delete;

    Array_Instance refs;
};

void copy_property(Instance* dest, const Instance* src, const Meta_Property* mp)
{
    void* const to = __property_of(dest, mp);
    const void* const from = __property_of(src, mp);
    value_ops(mp).assign(to, from);
    null_of(mp, to) = null_of(mp, from);
}

void set_reference(Instance* instance, const Meta_Reference* mr, Instance* value)
{
    unref(std::exchange(__ref_of(instance, mr), value));
}

void copy_reference(Instance* dest, const Instance* src, const Meta_Reference* mr)
{
    if (mr->subscript == 0)
    {
        set_reference(dest, mr, clone_or_null(__ref_of(src, mr)));
        return;
    }
    Property<Array_Instance>& to = __array_ref_of(dest, mr);
    const Property<Array_Instance>& from = __array_ref_of(src, mr);
    Owned_Refs copies;
    copies.refs.reserve(from.value.size());
    for (size_t i = 0; i < from.value.size(); i++)
        copies.refs.append(clone_or_null(from.value[i]));
    to.value.swap(copies.refs);
    to.null = from.null;
}

void copy_feature(Instance* dest, const Instance* src, const Meta_Feature* mf)
{
    if (const Meta_Property* mp = as_property(mf))
        copy_property(dest, src, mp);
    else if (const Meta_Reference* mr = as_reference(mf))
        copy_reference(dest, src, mr);
}

// Whether a model asks for a feature of another instance.
bool wanted_by(const Instance* model, const Meta_Feature* mf)
{
    const Meta_Feature* const own = find_counterpart(model->meta_class, mf);
    if (!own)
        return false;
    if (const Meta_Property* mp = as_property(own))
        return null_of(mp, __property_of(model, mp)) == 0;
    if (const Meta_Reference* mr = as_reference(own))
        return mr->subscript == 0 ? __ref_of(model, mr) != nullptr : __array_ref_of(model, mr).null == 0;
    return false;
}

bool same_class(const Instance* dest, const Instance* src)
{
    CIMPLE_ASSERT(dest->meta_class == src->meta_class);
    return dest->meta_class == src->meta_class;
}
} // namespace

Instance* create(const Meta_Class* meta_class, bool defaults)
{
    const Class_Plan& plan = plan_of(meta_class);
    return defaults ? plan.make_default() : plan.make_blank(meta_class);
}

Instance* create(const Meta_Method* meta_method)
{
    return create(reinterpret_cast<const Meta_Class*>(meta_method), false);
}

void destroy(Instance* instance)
{
    CIMPLE_ASSERT(instance->__magic == CIMPLE_INSTANCE_MAGIC);
    CIMPLE_ASSERT(Atomic_get(&instance->__refs) <= 1);
    plan_of(instance->meta_class).dispose(instance);
}

void destroyer(Instance* instance)
{
    if (instance)
        destroy(instance);
}

Instance* clone(const Instance* instance)
{
    return plan_of(instance->meta_class).duplicate(instance);
}

Instance* key_clone(const Instance* instance)
{
    const Class_Plan& plan = plan_of(instance->meta_class);
    Owner copied(plan.make_blank(instance->meta_class));
    nullify_properties(copied.get());
    for (const Key_Plan& key : plan.keys())
        copy_feature(copied.get(), instance, key.feature);
    return copied.release();
}

void ref(const Instance* instance)
{
    if (instance)
        Atomic_inc(&instance->__refs);
}

void unref(const Instance* instance)
{
    // Counting down is spared where nobody else could count.
    if (instance && (Atomic_get(&instance->__refs) == 1 || Atomic_dec_and_test(&instance->__refs)))
        destroy(const_cast<Instance*>(instance));
}

void clear(Instance* instance)
{
    instance->__name_space.clear();
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        if (const Meta_Property* mp = as_property(mf))
        {
            void* const field = __property_of(instance, mp);
            value_ops(mp).clear(field);
            null_of(mp, field) = 1;
        }
        else if (const Meta_Reference* mr = as_reference(mf))
        {
            if (mr->subscript == 0)
                set_reference(instance, mr, nullptr);
            else
            {
                Owned_Refs released;
                released.refs.swap(__array_ref_of(instance, mr).value);
                __array_ref_of(instance, mr).null = 1;
            }
        }
    }
}

void copy(Instance* dest, const Instance* src)
{
    if (dest == src || !same_class(dest, src))
        return;
    for (const Meta_Feature* mf : features_of(src->meta_class))
        copy_feature(dest, src, mf);
}

void copy(Instance* dest, const Instance* src, const Instance* model)
{
    if (dest == src || !same_class(dest, src))
        return;
    for (const Meta_Feature* mf : features_of(src->meta_class))
        if (wanted_by(model, mf))
            copy_feature(dest, src, mf);
}

void copy_keys(Instance* dest, const Instance* src)
{
    if (dest == src || !same_class(dest, src))
        return;
    for (const Key_Plan& key : plan_of(src->meta_class).keys())
        copy_feature(dest, src, key.feature);
}

CIMPLE_NAMESPACE_END
