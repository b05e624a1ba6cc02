// A batch of attribute-store keys that is read for one element after the other.
#include "switchaccess/Sml_Batch.h"

#include "platform/switch_server.h"
#include "support/substitute.h"

namespace cimple
{

bool Sml_Batch::read(std::initializer_list<const char*> arguments)
{
    const auto count = static_cast<std::uint32_t>(_entries.size());
    for (std::size_t i = 0; i < _entries.size(); ++i)
    {
        if (!substitute(_entries[i].key, kXplSmlTextSize, _formats[i], arguments))
            return false;
        _entries[i].value[0] = '\0';
        _entries[i].status = 0;
    }
    return xpl_smlGetBatch(hSwitch, _entries.data(), count) == 0 && !isErrors(_entries.data(), count);
}

} // namespace cimple
