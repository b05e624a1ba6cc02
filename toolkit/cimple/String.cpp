// The shared representation of strings.
#include <algorithm>
#include <cimple/String.h>
#include <functional>

CIMPLE_NAMESPACE_BEGIN

String::Rep* String::create(size_t capacity)
{
    if (capacity > UINT32_MAX - sizeof(Rep) - 1)
        throw std::bad_alloc();
    Rep* const rep = new (::operator new(sizeof(Rep) + capacity + 1)) Rep(static_cast<uint32>(capacity));
    rep->resize(0);
    return rep;
}

void String::destroy(Rep* rep)
{
    rep->~Rep();
    ::operator delete(rep);
}

namespace
{
const size_t kMinGrownCapacity = 32;

// Capacity for a string that grew to this size and may go on growing.
size_t grown(size_t size)
{
    size_t capacity = kMinGrownCapacity;
    while (capacity < size && capacity <= UINT32_MAX / 4)
        capacity *= 2;
    return std::max(capacity, size);
}
} // namespace

String::String(const char* s) : String(s, strlen(s)) {}

String::String(const char* s1, const char* s2) : String(s1, s2, "") {}

String::String(const char* s1, const char* s2, const char* s3) : String()
{
    reserve(strlen(s1) + strlen(s2) + strlen(s3));
    append(s1);
    append(s2);
    append(s3);
}

String::String(const char* s, size_t n) : _rep(nullptr)
{
    if (n > 0)
    {
        _rep = create(n);
        memcpy(_rep->data(), s, n);
        _rep->resize(n);
    }
}

String& String::operator=(const String& s)
{
    String copy(s);
    std::swap(_rep, copy._rep);
    return *this;
}

String& String::operator=(String&& s) noexcept
{
    std::swap(_rep, s._rep);
    return *this;
}

String& String::operator=(const char* s)
{
    assign(s);
    return *this;
}

// A representation of at least this capacity that nobody shares, with the same text.
char* String::mutable_data(size_t capacity)
{
    if (!_rep || _rep->shared() || _rep->capacity < capacity)
    {
        Rep* const rep = create(std::max(capacity, size()));
        memcpy(rep->data(), c_str(), size());
        rep->resize(size());
        unref(_rep);
        _rep = rep;
    }
    return _rep->data();
}

bool String::owns(const char* s) const
{
    const std::less_equal<const char*> before;
    return _rep && before(_rep->data(), s) && before(s, _rep->data() + _rep->size);
}

void String::reserve(size_t capacity)
{
    mutable_data(capacity);
}

void String::assign(const String& s)
{
    *this = s;
}

void String::assign(const char* s)
{
    assign(s, strlen(s));
}

void String::assign(const char* s, size_t n)
{
    *this = String(s, n);
}

void String::append(const String& s)
{
    append(s.c_str(), s.size());
}

void String::append(const char* s)
{
    append(s, strlen(s));
}

void String::append(const char* s, size_t n)
{
    if (n == 0)
        return;
    const String kept = owns(s) ? *this : String(); // our own text must outlive a change of representation
    const size_t old_size = size();
    const size_t new_size = old_size + n;
    char* const data = mutable_data(new_size <= capacity() ? new_size : grown(new_size));
    memcpy(data + old_size, s, n);
    _rep->resize(new_size);
}

void String::remove(size_t pos, size_t n)
{
    CIMPLE_ASSERT(pos <= size());
    const size_t removed = std::min(n, size() - pos);
    if (removed == 0)
        return;
    char* const data = mutable_data(size());
    const size_t new_size = size() - removed;
    memmove(data + pos, data + pos + removed, new_size - pos);
    _rep->resize(new_size);
}

String String::substr(size_t pos, size_t n) const
{
    CIMPLE_ASSERT(pos <= size());
    return String(c_str() + pos, std::min(n, size() - pos));
}

void String::clear()
{
    unref(_rep);
    _rep = nullptr;
}

void String::set(size_t i, char c)
{
    CIMPLE_ASSERT(i < size());
    mutable_data(size())[i] = c;
}

bool String::equal(const String& s) const
{
    return _rep == s._rep || equal(s.c_str(), s.size());
}

bool String::equal(const char* s) const
{
    return strcmp(c_str(), s) == 0;
}

bool String::equal(const char* s, size_t n) const
{
    return size() == n && memcmp(c_str(), s, n) == 0;
}

bool String::equal(size_t pos, const char* s, size_t n) const
{
    CIMPLE_ASSERT(pos + n <= size());
    return memcmp(c_str() + pos, s, n) == 0;
}

bool String::equali(const String& s) const
{
    return equali(s.c_str(), s.size());
}

bool String::equali(const char* s) const
{
    return eqi(c_str(), s);
}

bool String::equali(const char* s, size_t n) const
{
    return size() == n && std::equal(s,
                                     s + n,
                                     c_str(),
                                     [](char x, char y) {
                                         return __lower[static_cast<unsigned char>(x)] ==
                                                __lower[static_cast<unsigned char>(y)];
                                     });
}

size_t String::find(char c) const
{
    return find(c, 0);
}

size_t String::find(char c, size_t pos) const
{
    CIMPLE_ASSERT(pos <= size());
    const void* const p = memchr(c_str() + pos, c, size() - pos);
    return p ? static_cast<size_t>(static_cast<const char*>(p) - c_str()) : size_t(-1);
}

size_t String::find(const char* s) const
{
    const char* const p = strstr(c_str(), s);
    return p ? static_cast<size_t>(p - c_str()) : size_t(-1);
}

size_t String::find(const String& s) const
{
    return find(s.c_str());
}

CIMPLE_NAMESPACE_END
