// Walking through the features of a class or method. Internal.
#ifndef CIMPLE_FEATURES_H
#define CIMPLE_FEATURES_H

#include <cimple/Instance.h>

CIMPLE_NAMESPACE_BEGIN

inline bool is_key(const Meta_Feature* mf)
{
    return (mf->flags & CIMPLE_FLAG_KEY) != 0;
}

// The feature as a property, or null if it is none.
inline const Meta_Property* as_property(const Meta_Feature* mf)
{
    return (mf->flags & CIMPLE_FLAG_PROPERTY) != 0 ? reinterpret_cast<const Meta_Property*>(mf) : nullptr;
}

// The feature as a reference, or null if it is none.
inline const Meta_Reference* as_reference(const Meta_Feature* mf)
{
    return (mf->flags & CIMPLE_FLAG_REFERENCE) != 0 ? reinterpret_cast<const Meta_Reference*>(mf) : nullptr;
}

// A feature that is known to be a reference, such as a key that is no property.
inline const Meta_Reference* known_reference(const Meta_Feature* mf)
{
    return reinterpret_cast<const Meta_Reference*>(mf);
}

// All features in order, methods included: for (const Meta_Feature* mf : features_of(mc)).
class Feature_Range
{
  public:
    Feature_Range(const Meta_Feature* const* first, size_t n) : _first(first), _last(first + n) {}
    const Meta_Feature* const* begin() const { return _first; }
    const Meta_Feature* const* end() const { return _last; }

  private:
    const Meta_Feature* const* _first;
    const Meta_Feature* const* _last;
};

// Works for the description of a method object as well, which begins like that of a class.
inline Feature_Range features_of(const Meta_Class* mc)
{
    return Feature_Range(mc->meta_features, mc->num_meta_features);
}

// The feature of `mc` that corresponds to a feature of another class: the same, or one of the same name and
// kind. Null if there is none.
const Meta_Feature* find_counterpart(const Meta_Class* mc, const Meta_Feature* mf);

CIMPLE_NAMESPACE_END

#endif
