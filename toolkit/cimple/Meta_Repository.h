// The classes that a module knows.
#ifndef CIMPLE_META_REPOSITORY_H
#define CIMPLE_META_REPOSITORY_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

struct Meta_Class;

struct Meta_Repository
{
    const Meta_Class* const* meta_classes;
    size_t num_meta_classes;
};

// By name, letter case ignored; null if absent or if the repository is null.
const Meta_Class* find_meta_class(const Meta_Repository* repository, const char* class_name);

// 0: `sub` is `super` or derives from it; 1: it does not; -1: a class is unknown or an argument null.
int is_subclass(const Meta_Repository* repository, const char* super, const char* sub);

CIMPLE_NAMESPACE_END

#endif
