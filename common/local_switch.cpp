// What loads ask of the local switch: its name and its ports.
#include "common/local_switch.h"

#include "common/VRAX_Except.h"
#include "platform/data_cache.h"
#include "platform/switch_server.h"

namespace cimple
{

Local_Switch_Wwn::Local_Switch_Wwn(const char* source, int line) : _cell(get_Local_Switch_World_Wide_Name())
{
    if (_cell.empty() || *_cell == nullptr)
        throw VRAX_Except(source, "load", line, CRIT, "Unable to retrieve localWWN");
}

Root_Ports::Iterator Root_Ports::begin() const
{
    return Iterator(_cache, _cache->getFirstRootPortIndex());
}

Root_Ports::Iterator& Root_Ports::Iterator::operator++()
{
    _index = _cache->getNextRootPortIndex(_index);
    return *this;
}

} // namespace cimple
