// Values in meta data: defaults of properties and values of qualifiers.
#ifndef CIMPLE_META_VALUE_H
#define CIMPLE_META_VALUE_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// Stands for a Meta_Value_Scalar<T> or Meta_Value_Array<T>; the element that refers to it knows which. T is
// const char* for strings and datetimes.
struct Meta_Value
{
    int dummy;
};

template <class T>
struct Meta_Value_Scalar
{
    T value;
};

template <class T>
struct Meta_Value_Array
{
    const T* elements;
    size_t num_elements;
};

CIMPLE_NAMESPACE_END

#endif
