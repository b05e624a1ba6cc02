// Description of a reference, embedded instance or embedded object.
#ifndef CIMPLE_META_REFERENCE_H
#define CIMPLE_META_REFERENCE_H

#include <cimple/Meta_Feature.h>

CIMPLE_NAMESPACE_BEGIN

struct Meta_Class;

struct Meta_Reference
{
    Atomic refs; // 0: static, never freed
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers;
    size_t num_meta_qualifiers;
    sint16 subscript;             // 0 scalar, -1 array of any length, N array of fixed length
    const Meta_Class* meta_class; // declared class; Instance's own for embedded objects
    uint32 offset;                // of the pointer, or of the Property<Array<>>, in bytes
};

CIMPLE_NAMESPACE_END

#endif
