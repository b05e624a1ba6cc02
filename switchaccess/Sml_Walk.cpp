// The walk over elements that the attribute store names one after the other.
#include "switchaccess/Sml_Walk.h"

#include "platform/switch_server.h"
#include "support/substitute.h"

namespace cimple
{

bool Walk_Keys::readInBatch(xpl_smlEntry& entry)
{
    return xpl_smlGetBatch(hSwitch, &entry, 1) == 0 && !isErrors(&entry, 1);
}

bool Walk_Keys::readAlone(xpl_smlEntry& entry)
{
    return xpl_smlGetV(hSwitch, entry.value, &entry.status, "%s", entry.key) == 0;
}

Sml_Walk Sml_Walk::from(std::string first, const Walk_Keys& keys, const Caller& caller, const char* owner)
{
    Sml_Walk walk(keys, caller, owner);
    walk._known = std::move(first);
    return walk;
}

void Sml_Walk::start()
{
    if (_known)
        arrive(*_known);
    else
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
    const bool answered =
        substitute(entry.key, kXplSmlTextSize, format, {first, previous}) && _keys.read(entry);
    if (entry.status == _keys.endStatus)
        entry.value[0] = '\0';
    else if (!answered)
        throw VRAX_Except(_caller.source, _caller.function, _caller.line, failed);
    arrive(entry.value);
}

void Sml_Walk::arrive(std::string element)
{
    _element = std::move(element);
    _name = _keys.nameOf != nullptr && !_element.empty() ? _keys.nameOf(_element) : _element;
}

} // namespace cimple
