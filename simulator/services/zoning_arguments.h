// What the zoning library's calls take and hand out.
#ifndef SIMULATOR_SERVICES_ZONING_ARGUMENTS_H
#define SIMULATOR_SERVICES_ZONING_ARGUMENTS_H

#include "platform/xpl_fzs.h"
#include "simulator/services/session.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace simulator
{

// A name that a caller gave: empty for none, and cut behind the first byte that is too much.
inline std::string_view nameOf(const char* name)
{
    return name != nullptr ? std::string_view(name, ::strnlen(name, kZoneNameSize)) : std::string_view();
}

// Fills a field of kZoneNameSize bytes.
inline void putName(std::string_view name, char* field)
{
    const std::size_t length = std::min(name.size(), kZoneNameSize - 1);
    std::memset(field, 0, kZoneNameSize);
    std::copy_n(name.data(), length, field);
}

// A block for a list, which the caller gives back; null, and true, for an empty one.
template <class Element>
bool allocateList(std::size_t count, std::size_t elementSize, Element*& block)
{
    block = count != 0 ? static_cast<Element*>(allocateBlock(count * elementSize)) : nullptr;
    return count == 0 || block != nullptr;
}

} // namespace simulator

#endif
