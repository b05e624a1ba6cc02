// The reference count of instances, strings and meta data: an integer changed atomically.
#ifndef CIMPLE_ATOMIC_H
#define CIMPLE_ATOMIC_H

#include <atomic>
#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// An aggregate, so that it can begin the statically initialised meta data. The count is not part of an
// object's value: it changes on const objects too.
struct Atomic
{
    mutable std::atomic<int> n;
};

// clang-format off
#define CIMPLE_ATOMIC_INITIALIZER { 0 }
// clang-format on

static_assert(sizeof(Atomic) == sizeof(int), "counts are plain integers in memory");

inline void Atomic_create(Atomic* atomic, int n)
{
    atomic->n.store(n, std::memory_order_relaxed);
}
inline void Atomic_destroy(Atomic*) {}
inline int Atomic_get(const Atomic* atomic)
{
    return atomic->n.load(std::memory_order_acquire);
}
inline void Atomic_set(Atomic* atomic, int n)
{
    atomic->n.store(n, std::memory_order_release);
}
inline void Atomic_inc(const Atomic* atomic)
{
    atomic->n.fetch_add(1, std::memory_order_relaxed);
}
inline void Atomic_dec(const Atomic* atomic)
{
    atomic->n.fetch_sub(1, std::memory_order_acq_rel);
}

// Non-zero when the count became 0. The caller that sees this sees all writes of those who counted down
// before.
inline int Atomic_dec_and_test(const Atomic* atomic)
{
    return atomic->n.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

CIMPLE_NAMESPACE_END

#endif
