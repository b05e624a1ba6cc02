// The CIM string type: 8-bit text, UTF-8 by convention, whose copies share one representation.
#ifndef CIMPLE_STRING_H
#define CIMPLE_STRING_H

#include <atomic>
#include <cimple/Strings.h>
#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// Always NUL terminated, and shorter than 4 GiB: what would be longer throws std::bad_alloc. Different String
// objects that share a representation may be used by different threads. C strings passed in must not be null.
// Positions are not checked beyond CIMPLE_ASSERT.
class CIMPLE_CIMPLE_LINKAGE String
{
  public:
    String() : _rep(nullptr) {}
    String(const String& s) noexcept : _rep(s._rep)
    {
        if (_rep)
            _rep->refs.fetch_add(1, std::memory_order_relaxed);
    }
    String(String&& s) noexcept : _rep(s._rep) { s._rep = nullptr; }
    String(const char* s);
    String(const char* s1, const char* s2);                 // concatenation
    String(const char* s1, const char* s2, const char* s3); // concatenation
    String(const char* s, size_t n);                        // n bytes, NULs included
    ~String() { unref(_rep); }

    // At least this capacity, in a representation that is not shared.
    void reserve(size_t capacity);

    void assign(const String& s);
    void assign(const char* s);
    void assign(const char* s, size_t n);

    // The text may be (part of) this string's own.
    void append(const String& s);
    void append(const char* s);
    void append(const char* s, size_t n);
    void append(char c)
    {
        if (_rep && _rep->size < _rep->capacity && !_rep->shared())
        {
            char* const end = _rep->data() + _rep->size++;
            end[0] = c;
            end[1] = '\0';
        }
        else
            append(&c, 1);
    }

    void remove(size_t pos, size_t n);                      // n == size_t(-1): to the end
    String substr(size_t pos, size_t n = size_t(-1)) const; // n == size_t(-1): to the end

    String& operator=(const String& s);
    String& operator=(String&& s) noexcept;
    String& operator=(const char* s);

    void clear();

    const char* c_str() const
    {
        return _rep ? _rep->data() : "";
    }                                                     // valid until the next change of this object
    size_t size() const { return _rep ? _rep->size : 0; } // bytes, without the NUL
    bool empty() const { return size() == 0; }
    size_t capacity() const { return _rep ? _rep->capacity : 0; }
    char operator[](size_t i) const { return c_str()[i]; }
    void set(size_t i, char c);

    bool equal(const String& s) const;
    bool equal(const char* s) const;
    bool equal(const char* s, size_t n) const;
    bool equal(size_t pos, const char* s, size_t n) const; // n bytes at pos, which must exist
    bool equali(const String& s) const;
    bool equali(const char* s) const;
    bool equali(const char* s, size_t n) const;

    // Index of the first match, or size_t(-1).
    size_t find(char c) const;
    size_t find(char c, size_t pos) const;
    size_t find(const char* s) const;
    size_t find(const String& s) const;

  private:
    // The head of a block that goes on with capacity + 1 characters. Small: most texts are short, and there
    // are many.
    struct Rep
    {
        explicit Rep(uint32 room) : refs(1), size(0), capacity(room) {}

        bool shared() const { return refs.load(std::memory_order_acquire) != 1; }
        char* data() { return reinterpret_cast<char*>(this + 1); }
        void resize(size_t n)
        {
            size = static_cast<uint32>(n);
            data()[n] = '\0';
        }

        std::atomic<int> refs;
        uint32 size;
        uint32 capacity;
    };

    // Counting down is spared where nobody else could count.
    static void unref(Rep* rep)
    {
        if (rep && (!rep->shared() || rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1))
            destroy(rep);
    }
    static Rep* create(size_t capacity);
    static void destroy(Rep* rep);

    char* mutable_data(size_t capacity);
    bool owns(const char* s) const;

    Rep* _rep; // null for the empty string
};

static_assert(sizeof(String) == sizeof(void*), "instances hold strings as one pointer");

inline bool operator==(const String& s1, const String& s2)
{
    return s1.equal(s2);
}
inline bool operator==(const String& s1, const char* s2)
{
    return s1.equal(s2);
}
inline bool operator==(const char* s1, const String& s2)
{
    return s2.equal(s1);
}
inline bool operator!=(const String& s1, const String& s2)
{
    return !s1.equal(s2);
}
inline bool operator!=(const String& s1, const char* s2)
{
    return !s1.equal(s2);
}
inline bool operator!=(const char* s1, const String& s2)
{
    return !s2.equal(s1);
}

inline bool eqi(const String& s1, const String& s2)
{
    return s1.equali(s2);
}
inline bool eqi(const String& s1, const char* s2)
{
    return s1.equali(s2);
}
inline bool eqi(const char* s1, const String& s2)
{
    return s2.equali(s1);
}

CIMPLE_NAMESPACE_END

#endif
