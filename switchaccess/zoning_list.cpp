// Scoped owners of what the zoning library hands out.
#include "switchaccess/zoning_list.h"

#include "platform/zoning_server.h"

namespace cimple
{

std::string Zone_Members::text(std::uint32_t member) const
{
    char text[kZoneNameSize] = "";
    formatMemberId(_types.get(), _identifiers.get(), text, member);
    return text;
}

} // namespace cimple
