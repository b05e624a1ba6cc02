// Memory of arrays.
#include <cimple/Array.h>

CIMPLE_NAMESPACE_BEGIN

Array_Base::Rep* Array_Base::allocate(size_t capacity, size_t element_size)
{
    if (capacity > UINT32_MAX || capacity > (SIZE_MAX - sizeof(Rep)) / element_size)
        throw std::bad_alloc();
    return new (::operator new(sizeof(Rep) + capacity * element_size))
        Rep{0, static_cast<uint32>(capacity), 0};
}

void Array_Base::release(Rep* rep)
{
    ::operator delete(rep);
}

// Small arrays double. Large ones, such as those of a map's instances, gain a quarter: they would otherwise
// be a quarter empty in the mean.
const size_t kLarge = 64;

size_t Array_Base::grown(size_t size)
{
    if (size > kLarge)
        return static_cast<size_t>(
            std::min<uint64>(uint64(size) + size / 4, std::max<uint64>(size, UINT32_MAX)));
    size_t capacity = kMinCapacity;
    while (capacity < size)
        capacity *= 2;
    return capacity;
}

CIMPLE_NAMESPACE_END
