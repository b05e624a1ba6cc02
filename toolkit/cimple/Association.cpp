// Following associations from the references that association instances carry.
#include <bitset>
#include <cimple/Features.h>
#include <cimple/Narrowing.h>
#include <cimple/Strings.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
bool absent(const char* filter)
{
    return !filter || *filter == '\0';
}

bool matches(const char* filter, const char* name)
{
    return absent(filter) || eqi(filter, name);
}

// Whether the class or one of its superclasses has this name.
bool is_of_class(const Meta_Class* mc, const char* name)
{
    for (; mc; mc = mc->super_meta_class)
        if (eqi(mc->name, name))
            return true;
    return false;
}

struct End
{
    const Meta_Reference* mr;
    const Instance* value;
};

// The scalar references of an association instance that are not null.
class Ends
{
  public:
    explicit Ends(const Instance* association)
    {
        for (const Meta_Feature* mf : features_of(association->meta_class))
        {
            const Meta_Reference* const mr = as_reference(mf);
            if (mr && mr->subscript == 0 && __ref_of(association, mr) &&
                _size < CIMPLE_MAX_REFERENCES_PER_CLASS)
                _ends[_size++] = {mr, __ref_of(association, mr)};
        }
    }

    size_t size() const { return _size; }
    const End& operator[](size_t i) const { return _ends[i]; }

  private:
    End _ends[CIMPLE_MAX_REFERENCES_PER_CLASS];
    size_t _size = 0;
};
} // namespace

ssize_t get_associators(const Instance* instance,
                        const Instance* association_instance,
                        const char* result_class,
                        const char* role,
                        const char* result_role,
                        const Instance* associators[CIMPLE_MAX_REFERENCES_PER_CLASS])
{
    const Ends ends(association_instance);
    std::bitset<CIMPLE_MAX_REFERENCES_PER_CLASS> self; // ends that are the instance
    std::bitset<CIMPLE_MAX_REFERENCES_PER_CLASS>
        source; // those of them from which the association may be followed
    for (size_t i = 0; i < ends.size(); i++)
    {
        self[i] =
            is_subclass(ends[i].mr->meta_class, instance->meta_class) && key_eq(instance, ends[i].value);
        source[i] = self[i] && matches(role, ends[i].mr->name);
    }
    if (source.none())
        return -1;

    ssize_t n = 0;
    bool has_self = false;
    for (size_t i = 0; i < ends.size(); i++)
    {
        auto others = source;
        others.reset(i);
        const bool wanted = others.any() && matches(result_role, ends[i].mr->name) &&
                            (absent(result_class) || is_of_class(ends[i].value->meta_class, result_class));
        if (!wanted || (self[i] && has_self))
            continue;
        associators[n++] = ends[i].value;
        has_self = has_self || self[i];
    }
    return n;
}

bool is_reference_of(const Instance* instance, const Instance* reference, const char* role)
{
    const Ends ends(reference);
    for (size_t i = 0; i < ends.size(); i++)
        if (matches(role, ends[i].mr->name) && key_eq(instance, ends[i].value))
            return true;
    return false;
}

bool may_play(const Meta_Reference* reference, const Meta_Class* object_class, const char* role)
{
    return reference->subscript == 0 && matches(role, reference->name) &&
           is_subclass(reference->meta_class, object_class);
}

void narrow(Instance* model, const Instance* source, const char* role)
{
    for (const Meta_Feature* mf : features_of(model->meta_class))
    {
        const Meta_Reference* const mr = as_reference(mf);
        if (!mr || mr->subscript != 0)
            continue;
        Instance* const object =
            may_play(mr, source->meta_class, role) ? const_cast<Instance*>(source) : nullptr;
        ref(object);
        unref(std::exchange(__ref_of(model, mr), object));
    }
}

CIMPLE_NAMESPACE_END
