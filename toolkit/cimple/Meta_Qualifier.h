// Description of a qualifier on a class or feature.
#ifndef CIMPLE_META_QUALIFIER_H
#define CIMPLE_META_QUALIFIER_H

#include <cimple/Atomic.h>
#include <cimple/Meta_Value.h>

CIMPLE_NAMESPACE_BEGIN

struct Meta_Qualifier
{
    Atomic refs;
    const char* name;
    uint8 type;      // a Type code
    uint8 subscript; // 1: array
    uint16 flavors;  // CIMPLE_FLAVOR_ bits
    const Meta_Value* value;
};

// The first fields of everything that can carry qualifiers.
struct Meta_Qualified_Object
{
    Atomic refs;
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers;
    size_t num_meta_qualifiers;
};

// By name, letter case ignored; null if absent.
const Meta_Qualifier* find(const Meta_Qualifier* const* meta_qualifiers, size_t n, const char* name);

CIMPLE_NAMESPACE_END

#endif
