// Shared ownership of an instance.
#ifndef CIMPLE_REF_H
#define CIMPLE_REF_H

#include <cimple/Instance.h>

CIMPLE_NAMESPACE_BEGIN

template <class T>
class Ref
{
  public:
    Ref() : _ptr(nullptr) {}
    Ref(const Ref& x) : _ptr(x._ptr) { cimple::ref(_ptr); }
    Ref(Ref&& x) noexcept : _ptr(x.steal()) {}

    // Takes over the caller's count. If the object is not a T the result is null and the caller keeps its
    // count.
    template <class U>
    Ref(U* ptr) : _ptr(cast<T*>(ptr))
    {
    }

    ~Ref() { cimple::unref(_ptr); }

    Ref& operator=(const Ref& x)
    {
        reset(x._ptr);
        return *this;
    }
    Ref& operator=(Ref&& x) noexcept
    {
        std::swap(_ptr, x._ptr);
        return *this;
    }

    void reset()
    {
        cimple::unref(_ptr);
        _ptr = nullptr;
    }

    // Takes a count of its own, unlike the constructor.
    void reset(T* ptr)
    {
        cimple::ref(ptr);
        cimple::unref(_ptr);
        _ptr = ptr;
    }

    T* ptr() { return _ptr; }
    const T* ptr() const { return _ptr; }
    T* operator->() { return _ptr; }
    const T* operator->() const { return _ptr; }
    T& operator*() { return *_ptr; }
    const T& operator*() const { return *_ptr; }

    // Hands this object's count to the caller.
    T* steal() { return std::exchange(_ptr, nullptr); }

    operator bool() const { return _ptr != nullptr; }
    bool operator!() const { return _ptr == nullptr; }

    // How many share the object; 0 without one.
    size_t count() const { return _ptr ? static_cast<size_t>(Atomic_get(&_ptr->__refs)) : 0; }

  private:
    T* _ptr;
};

CIMPLE_NAMESPACE_END

#endif
