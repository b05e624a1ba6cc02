// The CIM char16 type: one UCS-2 code.
#ifndef CIMPLE_CHAR16_H
#define CIMPLE_CHAR16_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

class char16
{
  public:
    constexpr char16() : _code(0) {}
    char16(const char16&) = default;
    constexpr char16(uint16 x) : _code(x) {}
    char16& operator=(const char16&) = default;
    char16& operator=(uint16 x)
    {
        _code = x;
        return *this;
    }

    uint16 code() const { return _code; }
    void code(uint16 x) { _code = x; }

  private:
    uint16 _code;
};

static_assert(sizeof(char16) == 2, "char16 is its code and nothing else");

inline bool operator==(const char16& x, const char16& y)
{
    return x.code() == y.code();
}
inline bool operator!=(const char16& x, const char16& y)
{
    return x.code() != y.code();
}
inline bool operator<(const char16& x, const char16& y)
{
    return x.code() < y.code();
}
inline bool operator<=(const char16& x, const char16& y)
{
    return x.code() <= y.code();
}
inline bool operator>(const char16& x, const char16& y)
{
    return x.code() > y.code();
}
inline bool operator>=(const char16& x, const char16& y)
{
    return x.code() >= y.code();
}

CIMPLE_NAMESPACE_END

#endif
