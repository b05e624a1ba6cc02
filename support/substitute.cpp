// Texts with places for arguments, as attribute keys and log messages are written.
#include "support/substitute.h"

#include <limits>

namespace cimple
{

namespace
{

// A text under construction.
class Text_Writer
{
  public:
    Text_Writer(char* out, std::size_t size) : _out(out), _size(size) { _out[0] = '\0'; }

    bool put(char c)
    {
        if (_length + 1 >= _size)
            return false;
        _out[_length++] = c;
        _out[_length] = '\0';
        return true;
    }
    // At most the first `limit` characters.
    bool put(const char* text, std::size_t limit)
    {
        for (; *text != '\0' && limit > 0; --limit)
            if (!put(*text++))
                return false;
        return true;
    }

  private:
    char* _out;
    std::size_t _size;
    std::size_t _length = 0;
};

constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max();

struct Conversion
{
    std::size_t argument;       // counted from 0
    std::size_t limit = kWhole; // characters taken of it
};

// Moves `p` from behind a '%' to behind the conversion; `next` is the argument of one that names none.
Conversion readConversion(const char*& p, std::size_t& next)
{
    Conversion result{next};
    if (*p >= '1' && *p <= '9' && p[1] == '$')
    {
        result.argument = static_cast<std::size_t>(*p - '1');
        p += 2;
    }
    else
    {
        ++next;
    }
    if (*p == '.')
        for (result.limit = 0, ++p; *p >= '0' && *p <= '9'; ++p)
            result.limit = result.limit * 10 + static_cast<std::size_t>(*p - '0');
    if (*p != '\0')
        ++p; // the conversion character
    return result;
}

} // namespace

bool substitute(
    char* out, std::size_t size, const char* format, const char* const* arguments, std::size_t count)
{
    Text_Writer writer(out, size);
    std::size_t next = 0;
    for (const char* p = format; *p != '\0';)
    {
        const char c = *p++;
        if (c != '%')
        {
            if (!writer.put(c))
                return false;
            continue;
        }
        const Conversion conversion = readConversion(p, next);
        const char* const text = conversion.argument < count ? arguments[conversion.argument] : nullptr;
        if (text == nullptr || !writer.put(text, conversion.limit))
            return false;
    }
    return true;
}

} // namespace cimple
