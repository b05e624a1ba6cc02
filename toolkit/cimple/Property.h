// A property of an instance: a value and whether there is one.
#ifndef CIMPLE_PROPERTY_H
#define CIMPLE_PROPERTY_H

#include <cimple/Array.h>
#include <cimple/Type.h>

CIMPLE_NAMESPACE_BEGIN

// An aggregate without a constructor: outside an instance its content is indeterminate until set() or
// clear().
template <class T>
struct Property
{
    T value;
    uint8 null; // 0: has a value; otherwise NULL

    void set(const T& x)
    {
        value = x;
        null = 0;
    }

    void clear()
    {
        __clear(value);
        null = 1;
    }
};

// Both the null flags and the values are compared, the values also when both are null.
template <class T>
inline bool operator==(const Property<T>& x, const Property<T>& y)
{
    return x.null == y.null && x.value == y.value;
}

template <class T>
inline bool operator!=(const Property<T>& x, const Property<T>& y)
{
    return !(x == y);
}

// Meta data knows only the type of a property; the null flag is found right behind the value.
#define CIMPLE_CHECK_PROPERTY(T, CODE)                                                                       \
    static_assert(offsetof(Property<T>, null) == sizeof(T) &&                                                \
                      offsetof(Property<Array<T>>, null) == sizeof(void*),                                   \
                  "the null flag follows the value");
CIMPLE_FOR_EACH_TYPE(CIMPLE_CHECK_PROPERTY)
#undef CIMPLE_CHECK_PROPERTY
static_assert(offsetof(Property<Array<Instance*>>, null) == sizeof(void*), "the null flag follows the value");

CIMPLE_NAMESPACE_END

#endif
