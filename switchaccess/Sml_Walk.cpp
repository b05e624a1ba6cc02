// The walk over elements that the attribute store names one after the other.
#include "switchaccess/Sml_Walk.h"

#include "platform/switch_server.h"
#include "support/substitute.h"

namespace cimple
{

void Sml_Walk::start()
{
    read(_keys.first, nullptr, _keys.firstFailed);
}

void Sml_Walk::advance()
{
    const std::string previous = std::move(_name);
    read(_keys.next, previous.c_str(), _keys.nextFailed);
}

void Sml_Walk::read(const char* format, const char* previous, const Failure_Text& failed)
{
    xpl_smlEntry entry{};
    const char* const first = _owner != nullptr ? _owner : previous;
    const bool fits = substitute(entry.key, kXplSmlTextSize, format, {first, previous});
    const int result = fits ? xpl_smlGetBatch(hSwitch, &entry, 1) : XPL_INVALID_PARAMETER;
    if (result == 0 && entry.status == _keys.endStatus)
        entry.value[0] = '\0';
    else if (result != 0 || isErrors(&entry, 1))
        throw VRAX_Except(_caller.source, _caller.function, _caller.line, failed);
    _name = entry.value;
}

} // namespace cimple
