// How many elements of a kind the switch has.
#include "switchaccess/element_count.h"

#include "platform/xpl_sml.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace cimple
{

std::uint16_t elementCount(const char* key, const Caller& caller, const Failure_Text& failed)
{
    char value[kXplSmlTextSize] = "";
    std::int32_t status = XPL_OK;
    if (xpl_smlGetV(hSwitch, value, &status, "%s", key) != XPL_OK && status != XPL_NOT_AVAILABLE)
        throw VRAX_Except(caller.source, caller.function, caller.line, failed);
    const long count = status == XPL_OK ? std::strtol(value, nullptr, 10) : 0;
    return static_cast<std::uint16_t>(std::clamp(count, 0L, long{std::numeric_limits<std::uint16_t>::max()}));
}

} // namespace cimple
