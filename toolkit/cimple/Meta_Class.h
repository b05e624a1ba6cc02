// Description of a CIM class, as generated from its MOF.
#ifndef CIMPLE_META_CLASS_H
#define CIMPLE_META_CLASS_H

#include <cimple/Meta_Feature.h>
#include <cimple/Meta_Method.h>
#include <cimple/Meta_Property.h>
#include <cimple/Meta_Reference.h>
#include <cimple/Meta_Repository.h>

CIMPLE_NAMESPACE_BEGIN

struct Meta_Class
{
    Atomic refs; // 0: static, never freed
    uint32 flags;
    const char* name;
    const Meta_Qualifier* const* meta_qualifiers; // may be null
    size_t num_meta_qualifiers;
    const Meta_Feature* const* meta_features; // inherited ones included and first
    size_t num_meta_features;
    uint32 size;                            // of the C++ class, in bytes
    const Meta_Feature_Local* locals;       // as many as features
    const Meta_Class* super_meta_class;     // null for a root class
    size_t num_keys;                        // properties and references
    const Meta_Repository* meta_repository; // may be null
};

// By name, letter case ignored, inherited features included; null if absent. `type` selects kinds of
// features.
const Meta_Feature*
find_feature(const Meta_Class* mc, const char* name, uint32 type = CIMPLE_FLAG_ANY_FEATURE);
const Meta_Property* find_property(const Meta_Class* mc, const char* name);
const Meta_Reference* find_reference(const Meta_Class* mc, const char* name);
const Meta_Method* find_method(const Meta_Class* mc, const char* name);

bool has_methods(const Meta_Class* mc);
bool has_references(const Meta_Class* mc);

// Whether `descendant` is `ancestor` or derives from it. Classes are compared by name, letter case ignored,
// so that descriptions from different libraries match. Instance is every class's ancestor.
bool is_subclass(const Meta_Class* ancestor, const Meta_Class* descendant);

// Looks at `source`, its superclasses and its repository, in this order; null if absent.
const Meta_Class* find_meta_class(const Meta_Class* source, const char* class_name);

// Descriptions are static (count 0) and these do nothing to them.
void ref(const Meta_Class* mc);
void unref(const Meta_Class* mc);

CIMPLE_NAMESPACE_END

#endif
