// Description of a property or parameter that is not a reference.
#ifndef CIMPLE_META_PROPERTY_H
#define CIMPLE_META_PROPERTY_H

#include <cimple/Meta_Feature.h>
#include <cimple/Type.h>

CIMPLE_NAMESPACE_BEGIN

struct Meta_Property
{
    Atomic refs; // 0: static, never freed
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers;
    size_t num_meta_qualifiers;
    uint16 type;             // a Type code
    sint16 subscript;        // 0 scalar, -1 array of any length, N array of fixed length
    uint32 offset;           // of the Property<> in the C++ class, in bytes
    const Meta_Value* value; // default, or null
};

// Bytes that the value takes in an instance: a pointer for arrays.
size_t type_size_of(const Meta_Property* mp);

// The null flag of the property whose Property<> begins at `field`.
uint8& null_of(const Meta_Property* mp, const void* field);

// Whether two Property<> fields agree: equal null flags and, unless null, equal values.
bool property_eq(const Meta_Property* mp, const void* field1, const void* field2);

CIMPLE_NAMESPACE_END

#endif
