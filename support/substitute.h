// Texts with places for arguments, as attribute keys and log messages are written.
#ifndef SUPPORT_SUBSTITUTE_H
#define SUPPORT_SUBSTITUTE_H

#include <cstddef>
#include <initializer_list>

namespace cimple
{

// Writes `format` with its conversions replaced by the `count` arguments into `out` (`size` bytes,
// terminated). Each conversion ("%s", "%d") stands for the next argument, and a numbered one ("%2$s") for
// that argument; not every format needs every argument. A precision ("%.16s") limits the characters that are
// taken of the argument. False when the result does not fit, or when a conversion has no argument or a null
// one; what was written until then stays.
bool substitute(
    char* out, std::size_t size, const char* format, const char* const* arguments, std::size_t count);

inline bool
substitute(char* out, std::size_t size, const char* format, std::initializer_list<const char*> arguments)
{
    return substitute(out, size, format, arguments.begin(), arguments.size());
}

} // namespace cimple

#endif
