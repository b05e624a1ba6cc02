// Texts with places for arguments, as attribute keys and log messages are written.
#include "support/substitute.h"

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
    bool put(const char* text)
    {
        while (*text != '\0')
            if (!put(*text++))
                return false;
        return true;
    }

  private:
    char* _out;
    std::size_t _size;
    std::size_t _length = 0;
};

// Moves `p` from behind a '%' to behind the conversion. The number of the argument it names, counted from 0;
// `next` when it names none.
std::size_t conversionArgument(const char*& p, std::size_t& next)
{
    std::size_t argument = next;
    if (*p >= '1' && *p <= '9' && p[1] == '$')
    {
        argument = static_cast<std::size_t>(*p - '1');
        p += 2;
    }
    else
    {
        ++next;
    }
    if (*p != '\0')
        ++p; // the conversion character
    return argument;
}

} // namespace

bool substitute(char* out, std::size_t size, const char* format, std::initializer_list<const char*> arguments)
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
        const std::size_t argument = conversionArgument(p, next);
        const char* const text = argument < arguments.size() ? arguments.begin()[argument] : nullptr;
        if (text == nullptr || !writer.put(text))
            return false;
    }
    return true;
}

} // namespace cimple
