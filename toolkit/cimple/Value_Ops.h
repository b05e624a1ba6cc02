// What the library does with a value whose type it knows only from meta data. Internal.
#ifndef CIMPLE_VALUE_OPS_H
#define CIMPLE_VALUE_OPS_H

#include <cimple/Meta_Property.h>

CIMPLE_NAMESPACE_BEGIN

// Pointers are to a value in an instance: a scalar such as String, or an Array<>.
struct Value_Ops
{
    size_t size;
    void (*construct)(void* value);
    void (*destroy)(void* value);
    void (*clear)(void* value);
    void (*assign)(void* dest, const void* src);
    void (*set_default)(void* value, const Meta_Value* meta_value);
    bool (*equal)(const void* value1, const void* value2);
    size_t (*hash)(const void* value); // equal values have equal hashes
    void (*print)(FILE* os, const void* value);
};

const Value_Ops& value_ops(const Meta_Property* mp);

CIMPLE_NAMESPACE_END

#endif
