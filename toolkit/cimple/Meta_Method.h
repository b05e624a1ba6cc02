// Description of a method, which is also the class of the objects that carry its parameters.
#ifndef CIMPLE_META_METHOD_H
#define CIMPLE_META_METHOD_H

#include <cimple/Meta_Feature.h>
#include <cimple/Meta_Property.h>
#include <cimple/Meta_Reference.h>

CIMPLE_NAMESPACE_BEGIN

// Begins like Meta_Class up to `size`: a method object's meta_class pointer points to one of these, which
// must then be told by CIMPLE_FLAG_METHOD and not be asked for more.
struct Meta_Method
{
    Atomic refs; // 0: static, never freed
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers;
    size_t num_meta_qualifiers;
    const Meta_Feature* const* meta_features; // parameters in order, return_value last
    size_t num_meta_features;
    size_t size; // of the C++ class that carries the parameters
    uint16 return_type;
};

// By name, letter case ignored; null if absent.
const Meta_Feature*
find_feature(const Meta_Method* mm, const char* name, uint32 type = CIMPLE_FLAG_ANY_FEATURE);
const Meta_Property* find_parameter(const Meta_Method* mm, const char* name);
const Meta_Reference* find_reference(const Meta_Method* mm, const char* name);

CIMPLE_NAMESPACE_END

#endif
