// The CIM array type: a growable sequence with value semantics, one pointer in size.
#ifndef CIMPLE_ARRAY_H
#define CIMPLE_ARRAY_H

#include <algorithm>
#include <cimple/Datetime.h>
#include <cimple/String.h>
#include <cimple/char16.h>
#include <cimple/config.h>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

CIMPLE_NAMESPACE_BEGIN

struct Instance;

// What all arrays have in common, so that instances can handle arrays of any class pointer alike.
class CIMPLE_CIMPLE_LINKAGE Array_Base
{
  public:
    size_t size() const { return _rep ? _rep->size : 0; }
    size_t capacity() const { return _rep ? _rep->capacity : 0; }

  protected:
    static const size_t kMinCapacity = 8;

    // The head of a block that goes on with room for `capacity` elements. The first `gap` of them are unused:
    // removal at the front leaves the rest where it is.
    struct alignas(8) Rep
    {
        uint32 size;
        uint32 capacity;
        uint32 gap;
    };

    Array_Base() : _rep(nullptr) {}
    Array_Base(const Array_Base&) = delete;
    Array_Base& operator=(const Array_Base&) = delete;
    ~Array_Base() = default;

    // Memory for a representation with room for the elements; throws std::bad_alloc.
    static Rep* allocate(size_t capacity, size_t element_size);
    static void release(Rep* rep);

    // A capacity for this many elements that leaves room to grow.
    static size_t grown(size_t size);

    Rep* _rep; // null while the array never held an element
};

// Copying copies the elements. Pointers to instances are copied as pointers: who owns what they point to is
// the business of the instance that contains the array. Positions are not checked. Room for more than 2^32 -
// 1 elements throws std::bad_alloc.
template <class T>
class Array : public Array_Base
{
  public:
    Array() = default;
    Array(const Array& x) : Array(x.data(), x.size()) {}
    Array(Array&& x) noexcept : Array_Base() { swap(x); }
    Array(const T* data, size_t size) : Array()
    {
        reserve(size); // no more: most copies do not grow
        append(data, size);
    }
    ~Array() { destroy_rep(); }

    Array& operator=(const Array& x)
    {
        if (this != &x)
            assign(x.data(), x.size());
        return *this;
    }
    Array& operator=(Array&& x) noexcept
    {
        swap(x);
        return *this;
    }

    void assign(const Array& x) { *this = x; }
    void assign(const T* data, size_t size)
    {
        Array copy(data, size);
        swap(copy);
    }

    const T* data() const { return first(_rep); }
    T* data() { return first(_rep); }
    T& operator[](size_t pos) { return data()[pos]; }
    const T& operator[](size_t pos) const { return data()[pos]; }

    // Never shrinks.
    void reserve(size_t capacity)
    {
        if (!fits(capacity) && capacity > size())
            reallocate(std::max(capacity, this->capacity()));
    }

    // New elements are zero, false, empty or null.
    void resize(size_t size)
    {
        const size_t old_size = this->size();
        if (size < old_size)
            remove(size, old_size - size);
        else if (size > old_size)
        {
            make_room(size);
            std::uninitialized_value_construct_n(data() + old_size, size - old_size);
            _rep->size = static_cast<uint32>(size);
        }
    }

    // The elements inserted may be (part of) this array's own.
    void insert(size_t pos, const T* data, size_t n)
    {
        if (n == 0)
            return;
        if (owns(data))
        {
            const Array copy(data, n);
            insert(pos, copy.data(), n);
            return;
        }
        const size_t old_size = size();
        make_room(old_size + n);
        T* const first = this->data();
        std::uninitialized_copy_n(data, n, first + old_size);
        _rep->size = static_cast<uint32>(old_size +
                                         n); // NOLINT(clang-analyzer-core.NullDereference): there is room now
        if (pos < old_size)
            std::rotate(first + pos, first + old_size, first + old_size + n);
    }
    void insert(size_t pos, const T& x) { insert(pos, std::addressof(x), 1); }

    void append(const T* data, size_t n) { insert(size(), data, n); }
    void append(const T& x) { insert(size(), std::addressof(x), 1); }
    void prepend(const T* data, size_t n) { insert(0, data, n); }
    void prepend(const T& x) { insert(0, std::addressof(x), 1); }

    // The order of the rest stays. The shorter side closes the gap, so that removal at either end does not
    // depend on the size. What is not there is not removed.
    void remove(size_t pos, size_t n)
    {
        if (pos >= size() || n == 0)
            return;
        n = std::min(n, size() - pos);
        const size_t behind = size() - pos - n;
        T* const first = data();
        T* const removed = first + pos;
        if (pos < behind)
        {
            std::move_backward(first, removed, removed + n);
            std::destroy_n(first, n);
            _rep->gap += static_cast<uint32>(n);
        }
        else
        {
            std::move(removed + n, removed + n + behind, removed);
            std::destroy_n(removed + behind, n);
        }
        _rep->size -= static_cast<uint32>(n);
        if (_rep->size == 0)
            _rep->gap = 0;
    }
    void remove(size_t pos) { remove(pos, 1); }

    // Keeps the capacity.
    void clear() { remove(0, size()); }

    void swap(Array& x) noexcept { std::swap(_rep, x._rep); }

    // Index of the first equal element, or size_t(-1).
    size_t find(const T& x) const
    {
        for (size_t i = 0; i < size(); i++)
            if ((*this)[i] == x)
                return i;
        return size_t(-1);
    }

    static Array make(const T& x0) { return make_from(x0); }
    static Array make(const T& x0, const T& x1) { return make_from(x0, x1); }
    static Array make(const T& x0, const T& x1, const T& x2) { return make_from(x0, x1, x2); }
    static Array make(const T& x0, const T& x1, const T& x2, const T& x3)
    {
        return make_from(x0, x1, x2, x3);
    }
    static Array make(const T& x0, const T& x1, const T& x2, const T& x3, const T& x4)
    {
        return make_from(x0, x1, x2, x3, x4);
    }

  private:
    static T* elements(Rep* rep)
    {
        static_assert(alignof(T) <= alignof(Rep), "elements follow the representation's head");
        return reinterpret_cast<T*>(rep + 1);
    }
    static T* first(Rep* rep) { return rep ? elements(rep) + rep->gap : nullptr; }

    template <class... Ts>
    static Array make_from(const Ts&... xs)
    {
        Array array;
        array.reserve(sizeof...(xs));
        (array.append(xs), ...);
        return array;
    }

    bool owns(const T* element) const
    {
        const std::less<const T*> before;
        return _rep && !before(element, data()) && before(element, data() + size());
    }

    bool fits(size_t size) const { return _rep && size <= _rep->capacity - _rep->gap; }

    // Moves elements only after additions or removals of a quarter of what there is to move.
    void make_room(size_t size)
    {
        if (fits(size))
            return;
        if (_rep && size <= _rep->capacity && _rep->gap >= _rep->capacity / 2)
            close_gap();
        else
            reallocate(grown(std::max(size, capacity() + 1)));
    }

    void close_gap()
    {
        T* const from = data();
        T* const to = elements(_rep);
        const size_t apart = std::min<size_t>(size(), _rep->gap); // the rest is moved onto elements
        std::uninitialized_move_n(from, apart, to);
        std::move(from + apart, from + size(), to + apart);
        std::destroy(std::max(from, to + size()), from + size());
        _rep->gap = 0;
    }

    void reallocate(size_t capacity)
    {
        Rep* const rep = allocate(capacity, sizeof(T));
        rep->size = static_cast<uint32>(size());
        if (_rep)
        {
            std::uninitialized_move_n(data(), size(), elements(rep));
            std::destroy_n(data(), size());
        }
        release(_rep);
        _rep = rep;
    }

    void destroy_rep()
    {
        if (_rep)
            std::destroy_n(data(), size());
        release(_rep);
    }
};

template <class T>
bool operator==(const Array<T>& x, const Array<T>& y)
{
    return x.size() == y.size() && std::equal(x.data(), x.data() + x.size(), y.data());
}

template <class T>
inline void __clear(Array<T>& x)
{
    x.clear();
}

typedef Array<boolean> Array_boolean;
typedef Array<uint8> Array_uint8;
typedef Array<sint8> Array_sint8;
typedef Array<uint16> Array_uint16;
typedef Array<sint16> Array_sint16;
typedef Array<uint32> Array_uint32;
typedef Array<sint32> Array_sint32;
typedef Array<uint64> Array_uint64;
typedef Array<sint64> Array_sint64;
typedef Array<real32> Array_real32;
typedef Array<real64> Array_real64;
typedef Array<char16> Array_char16;
typedef Array<String> Array_String;
typedef Array<Datetime> Array_Datetime;
typedef Array<Instance*> Array_Instance;
typedef Array<Instance*> Array_Ref;

static_assert(sizeof(Array_boolean) == sizeof(void*) && sizeof(Array_uint64) == sizeof(void*) &&
                  sizeof(Array_String) == sizeof(void*) && sizeof(Array_Instance) == sizeof(void*),
              "instances hold arrays as one pointer");

CIMPLE_NAMESPACE_END

#endif
