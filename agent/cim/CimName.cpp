// Case-insensitive comparison and hashing of CIM names.
#include "agent/cim/CimName.h"

#include <algorithm>
#include <cstdint>

namespace cimd
{
namespace
{

unsigned char lower(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return u >= 'A' && u <= 'Z' ? static_cast<unsigned char>(u + ('a' - 'A')) : u;
}

} // namespace

int compareNoCase(std::string_view left, std::string_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i)
    {
        const int difference = int(lower(left[i])) - int(lower(right[i]));
        if (difference != 0)
            return difference;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool equalNoCase(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && compareNoCase(left, right) == 0;
}

CimName::CimName(std::string_view text)
{
    if (!text.empty())
        _text = std::make_shared<const std::string>(text);
}

const std::string& CimName::str() const
{
    static const std::string kEmpty;
    return _text ? *_text : kEmpty;
}

std::size_t CimName::hash() const
{
    // FNV-1a in 32 bits: the same on every word size.
    std::uint32_t value = 2166136261U;
    for (const char c : str())
        value = (value ^ lower(c)) * 16777619U;
    return value;
}

bool isListed(const PropertyList& list, const CimName& name)
{
    return !list || std::find(list->begin(), list->end(), name) != list->end();
}

} // namespace cimd
