// The life of instances: creation, copies, reference counts, destruction.
#include <cimple/Features.h>
#include <cimple/Value_Ops.h>
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

bool is_method(const Meta_Class* mc)
{
    return (mc->flags & CIMPLE_FLAG_METHOD) != 0;
}

size_t size_of(const Meta_Class* mc)
{
    return is_method(mc) ? reinterpret_cast<const Meta_Method*>(mc)->size : mc->size;
}

// An instance whose members are all constructed: zero or empty and not null.
Owner create_blank(const Meta_Class* mc)
{
    const size_t size = size_of(mc);
    void* const memory = ::operator new(size);
    memset(memory, 0, size);
    Instance* const instance = new (memory) Instance();
    instance->__magic = CIMPLE_INSTANCE_MAGIC;
    Atomic_create(&instance->__refs, 1);
    instance->meta_class = mc;

    for (const Meta_Feature* mf : features_of(mc))
    {
        if (const Meta_Property* mp = as_property(mf))
            value_ops(mp).construct(__property_of(instance, mp));
        else if (const Meta_Reference* mr = as_reference(mf))
        {
            if (mr->subscript == 0)
                __ref_of(instance, mr) = nullptr;
            else
                new (&__array_ref_of(instance, mr)) Property<Array_Instance>();
        }
    }
    return Owner(instance);
}

void copy_property(Instance* dest, const Instance* src, const Meta_Property* mp)
{
    void* const to = __property_of(dest, mp);
    const void* const from = __property_of(src, mp);
    value_ops(mp).assign(to, from);
    null_of(mp, to) = null_of(mp, from);
}

Instance* clone_or_null(const Instance* instance)
{
    return instance ? clone(instance) : nullptr;
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
    Owner instance = create_blank(meta_class);
    if (defaults)
    {
        for (const Meta_Feature* mf : features_of(meta_class))
        {
            const Meta_Property* const mp = as_property(mf);
            if (!mp)
                continue;
            void* const field = __property_of(instance.get(), mp);
            if (mp->value)
                value_ops(mp).set_default(field, mp->value);
            else
                null_of(mp, field) = 1;
        }
    }
    return instance.release();
}

Instance* create(const Meta_Method* meta_method)
{
    return create(reinterpret_cast<const Meta_Class*>(meta_method), false);
}

void destroy(Instance* instance)
{
    CIMPLE_ASSERT(instance->__magic == CIMPLE_INSTANCE_MAGIC);
    CIMPLE_ASSERT(Atomic_get(&instance->__refs) <= 1);
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        if (const Meta_Property* mp = as_property(mf))
            value_ops(mp).destroy(__property_of(instance, mp));
        else if (const Meta_Reference* mr = as_reference(mf))
        {
            if (mr->subscript == 0)
                unref(__ref_of(instance, mr));
            else
            {
                Property<Array_Instance>& refs = __array_ref_of(instance, mr);
                Owned_Refs released;
                released.refs.swap(refs.value);
                refs.~Property();
            }
        }
    }
    instance->__magic = 0;
    instance->~Instance();
    ::operator delete(instance);
}

void destroyer(Instance* instance)
{
    if (instance)
        destroy(instance);
}

Instance* clone(const Instance* instance)
{
    Owner copied = create_blank(instance->meta_class);
    copied->__name_space = instance->__name_space;
    copy(copied.get(), instance);
    return copied.release();
}

Instance* key_clone(const Instance* instance)
{
    Owner copied = create_blank(instance->meta_class);
    nullify_properties(copied.get());
    copy_keys(copied.get(), instance);
    return copied.release();
}

void ref(const Instance* instance)
{
    if (instance)
        Atomic_inc(&instance->__refs);
}

void unref(const Instance* instance)
{
    if (instance && Atomic_dec_and_test(&instance->__refs))
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
    {
        if (wanted_by(model, mf))
            copy_feature(dest, src, mf);
    }
}

void copy_keys(Instance* dest, const Instance* src)
{
    if (dest == src || !same_class(dest, src))
        return;
    for (const Meta_Feature* mf : features_of(src->meta_class))
    {
        if (is_key(mf))
            copy_feature(dest, src, mf);
    }
}

CIMPLE_NAMESPACE_END
