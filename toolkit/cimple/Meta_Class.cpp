// Finding things in meta data.
#include <algorithm>
#include <cimple/Features.h>
#include <cimple/Strings.h>

CIMPLE_NAMESPACE_BEGIN

const Meta_Class Instance::static_meta_class = {
    CIMPLE_ATOMIC_INITIALIZER,
    CIMPLE_FLAG_CLASS,
    "Instance",
    nullptr,
    0,
    nullptr,
    0,
    sizeof(Instance),
    nullptr,
    nullptr,
    0,
    nullptr,
};

namespace
{
const Meta_Feature* find_in(const Feature_Range& features, const char* name, uint32 type)
{
    for (const Meta_Feature* mf : features)
        if ((mf->flags & type) != 0 && eqi(mf->name, name))
            return mf;
    return nullptr;
}

bool has_features(const Meta_Class* mc, uint32 type)
{
    const Feature_Range features = features_of(mc);
    return std::any_of(
        features.begin(), features.end(), [type](const Meta_Feature* mf) { return (mf->flags & type) != 0; });
}

bool same_class(const Meta_Class* mc1, const Meta_Class* mc2)
{
    return mc1 == mc2 || eqi(mc1->name, mc2->name);
}
} // namespace

const Meta_Qualifier* find(const Meta_Qualifier* const* meta_qualifiers, size_t n, const char* name)
{
    for (size_t i = 0; i < n; i++)
        if (eqi(meta_qualifiers[i]->name, name))
            return meta_qualifiers[i];
    return nullptr;
}

const Meta_Feature* find_feature(const Meta_Class* mc, const char* name, uint32 type)
{
    return find_in(features_of(mc), name, type);
}

const Meta_Property* find_property(const Meta_Class* mc, const char* name)
{
    return reinterpret_cast<const Meta_Property*>(find_feature(mc, name, CIMPLE_FLAG_PROPERTY));
}

const Meta_Reference* find_reference(const Meta_Class* mc, const char* name)
{
    return reinterpret_cast<const Meta_Reference*>(find_feature(mc, name, CIMPLE_FLAG_REFERENCE));
}

const Meta_Method* find_method(const Meta_Class* mc, const char* name)
{
    return reinterpret_cast<const Meta_Method*>(find_feature(mc, name, CIMPLE_FLAG_METHOD));
}

const Meta_Feature* find_feature(const Meta_Method* mm, const char* name, uint32 type)
{
    return find_in(Feature_Range(mm->meta_features, mm->num_meta_features), name, type);
}

const Meta_Property* find_parameter(const Meta_Method* mm, const char* name)
{
    return reinterpret_cast<const Meta_Property*>(find_feature(mm, name, CIMPLE_FLAG_PROPERTY));
}

const Meta_Reference* find_reference(const Meta_Method* mm, const char* name)
{
    return reinterpret_cast<const Meta_Reference*>(find_feature(mm, name, CIMPLE_FLAG_REFERENCE));
}

const Meta_Feature* find_counterpart(const Meta_Class* mc, const Meta_Feature* mf)
{
    const Feature_Range features = features_of(mc);
    if (std::find(features.begin(), features.end(), mf) != features.end())
        return mf;
    return find_in(features, mf->name, mf->flags & CIMPLE_FLAG_ANY_FEATURE);
}

bool has_methods(const Meta_Class* mc)
{
    return has_features(mc, CIMPLE_FLAG_METHOD);
}

bool has_references(const Meta_Class* mc)
{
    return has_features(mc, CIMPLE_FLAG_REFERENCE);
}

bool is_subclass(const Meta_Class* ancestor, const Meta_Class* descendant)
{
    if (same_class(ancestor, &Instance::static_meta_class))
        return true;
    if ((descendant->flags & CIMPLE_FLAG_METHOD) != 0) // a method object, which has no superclass to ask for
        return same_class(ancestor, descendant);
    for (const Meta_Class* mc = descendant; mc; mc = mc->super_meta_class)
        if (same_class(ancestor, mc))
            return true;
    return false;
}

const Meta_Class* find_meta_class(const Meta_Class* source, const char* class_name)
{
    for (const Meta_Class* mc = source; mc; mc = mc->super_meta_class)
        if (eqi(mc->name, class_name))
            return mc;
    return source ? find_meta_class(source->meta_repository, class_name) : nullptr;
}

const Meta_Class* find_meta_class(const Meta_Repository* repository, const char* class_name)
{
    for (size_t i = 0; repository && i < repository->num_meta_classes; i++)
        if (eqi(repository->meta_classes[i]->name, class_name))
            return repository->meta_classes[i];
    return nullptr;
}

int is_subclass(const Meta_Repository* repository, const char* super, const char* sub)
{
    if (!repository || !super || !sub)
        return -1;
    const Meta_Class* const super_class = find_meta_class(repository, super);
    const Meta_Class* const sub_class = find_meta_class(repository, sub);
    if (!super_class || !sub_class)
        return -1;
    return is_subclass(super_class, sub_class) ? 0 : 1;
}

void ref(const Meta_Class*) {}

void unref(const Meta_Class*) {}

CIMPLE_NAMESPACE_END
