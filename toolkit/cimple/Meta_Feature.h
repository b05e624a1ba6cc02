// The common beginning of the descriptions of properties, references and methods.
#ifndef CIMPLE_META_FEATURE_H
#define CIMPLE_META_FEATURE_H

#include <cimple/Meta_Qualifier.h>
#include <cimple/flags.h>

CIMPLE_NAMESPACE_BEGIN

// Flags tell what the whole object is: a Meta_Property, Meta_Reference or Meta_Method.
struct Meta_Feature
{
    Atomic refs;
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers; // may be null
    size_t num_meta_qualifiers;
};

struct Meta_Feature_Local
{
    uint8 local; // 1: declared or overridden in the class itself; 0: inherited unchanged
};

CIMPLE_NAMESPACE_END

#endif
