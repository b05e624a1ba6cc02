// The name of the local switch.
#include "common/local_switch.h"

#include "common/VRAX_Except.h"
#include "platform/switch_server.h"

namespace cimple
{

Local_Switch_Wwn::Local_Switch_Wwn(const char* source, int line) : _cell(get_Local_Switch_World_Wide_Name())
{
    if (_cell.empty() || *_cell == nullptr)
        throw VRAX_Except(source, "load", line, CRIT, "Unable to retrieve localWWN");
}

} // namespace cimple
