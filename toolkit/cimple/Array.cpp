// Memory of arrays.
#include <cimple/Array.h>

CIMPLE_NAMESPACE_BEGIN

Array_Base::Rep* Array_Base::allocate(size_t capacity, size_t element_size)
{
    if (capacity > (SIZE_MAX - sizeof(Rep)) / element_size)
        throw std::bad_alloc();
    return new (::operator new(sizeof(Rep) + capacity * element_size)) Rep{0, capacity, 0};
}

void Array_Base::release(Rep* rep)
{
    ::operator delete(rep);
}

size_t Array_Base::grown(size_t size)
{
    size_t capacity = kMinCapacity;
    while (capacity < size)
        capacity *= 2;
    return capacity;
}

CIMPLE_NAMESPACE_END
