// A batch of attribute-store keys that is read for one element after the other.
#include "common/Sml_Batch.h"

#include "platform/switch_server.h"

#include <cstdio>
#include <cstdlib>

namespace cimple
{

namespace
{

// A key under construction.
class Key_Writer
{
  public:
    explicit Key_Writer(char (&key)[kXplSmlTextSize]) : _key(key) {}

    bool put(char c)
    {
        if (_length + 1 >= kXplSmlTextSize)
            return false;
        _key[_length++] = c;
        return true;
    }
    bool put(const char* text)
    {
        while (*text != '\0')
        {
            if (!put(*text++))
                return false;
        }
        return true;
    }
    void finish() { _key[_length] = '\0'; }

  private:
    char (&_key)[kXplSmlTextSize];
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

bool formatSmlKey(char (&key)[kXplSmlTextSize],
                  const char* format,
                  std::initializer_list<const char*> arguments)
{
    Key_Writer writer(key);
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
        if (argument >= arguments.size() || !writer.put(arguments.begin()[argument]))
            return false;
    }
    writer.finish();
    return true;
}

bool Sml_Batch::read(std::initializer_list<const char*> arguments)
{
    const auto count = static_cast<std::uint32_t>(_entries.size());
    for (std::size_t i = 0; i < _entries.size(); ++i)
    {
        if (!formatSmlKey(_entries[i].key, _formats[i], arguments))
            return false;
        _entries[i].value[0] = '\0';
        _entries[i].status = 0;
    }
    return xpl_smlGetBatch(hSwitch, _entries.data(), count) == 0 && !hasErrors();
}

void Sml_Batch::substitute(std::size_t entry, const char* value)
{
    std::snprintf(_entries[entry].value, kXplSmlTextSize, "%s", value);
    _entries[entry].status = 0;
}

bool Sml_Batch::hasErrors() const
{
    return isErrors(_entries.data(), static_cast<std::uint32_t>(_entries.size()));
}

std::uint64_t Sml_Batch::hexadecimal(std::size_t entry) const
{
    return std::strtoull(_entries[entry].value, nullptr, 16);
}

std::uint64_t Sml_Batch::decimal(std::size_t entry) const
{
    return std::strtoull(_entries[entry].value, nullptr, 10);
}

} // namespace cimple
