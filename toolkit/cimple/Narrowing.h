// Asking a provider of an association for the instances that refer to one object only. Internal.
#ifndef CIMPLE_NARROWING_H
#define CIMPLE_NARROWING_H

#include <cimple/Instance.h>

CIMPLE_NAMESPACE_BEGIN

// Whether an object of the class may stand in the reference of an association: in the role, unless it is
// empty or null, and by the reference's declared class.
bool may_play(const Meta_Reference* reference, const Meta_Class* object_class, const char* role);

// Makes a model of an association refer to `source` in every role that it may play, and to nothing in the
// others. To a provider's enum_instances this means that only instances which refer to that object in one of
// these roles are needed. It is free to hand out others, and the caller filters.
void narrow(Instance* model, const Instance* source, const char* role);

CIMPLE_NAMESPACE_END

#endif
