// A counter that threads may change without a lock.
#ifndef CIMPLE_ATOMIC_COUNTER_H
#define CIMPLE_ATOMIC_COUNTER_H

#include <cimple/Atomic.h>

CIMPLE_NAMESPACE_BEGIN

class Atomic_Counter
{
  public:
    Atomic_Counter() : _atomic CIMPLE_ATOMIC_INITIALIZER {}
    Atomic_Counter(int x) : _atomic{{x}} {}
    Atomic_Counter(const Atomic_Counter& x) : _atomic{{x.get()}} {}
    Atomic_Counter& operator=(const Atomic_Counter& x)
    {
        Atomic_set(&_atomic, x.get());
        return *this;
    }

    int get() const { return Atomic_get(&_atomic); }
    void inc() { Atomic_inc(&_atomic); }
    void dec() { Atomic_dec(&_atomic); }
    bool dec_and_test() { return Atomic_dec_and_test(&_atomic) != 0; } // true when it became 0

  private:
    Atomic _atomic;
};

CIMPLE_NAMESPACE_END

#endif
