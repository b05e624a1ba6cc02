// Texts in fields of configuration records.
#include "switchaccess/Record.h"

namespace cimple
{

std::size_t fittingLength(const String& text, std::size_t limit)
{
    if (text.size() <= limit)
        return text.size();
    const auto continues = [&text](std::size_t i)
    { return (static_cast<unsigned char>(text.c_str()[i]) & 0xC0U) == 0x80U; };
    std::size_t length = limit;
    while (length > 0 && continues(length))
        --length;
    return length;
}

} // namespace cimple
