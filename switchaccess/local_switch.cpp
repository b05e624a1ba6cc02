// The name of the local switch.
#include "switchaccess/local_switch.h"

#include "platform/switch_server.h"

namespace cimple
{

Local_Switch_Wwn::Local_Switch_Wwn(const char* source,
                                   const char* function,
                                   const Failure_Text& missing,
                                   int line)
    : _cell(get_Local_Switch_World_Wide_Name())
{
    if (_cell.empty() || *_cell == nullptr)
        throw VRAX_Except(source, function, line, missing);
}

} // namespace cimple
