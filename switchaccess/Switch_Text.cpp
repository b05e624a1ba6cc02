// A text that the platform hands out, required.
#include "switchaccess/Switch_Text.h"

namespace cimple
{

Switch_Text::Switch_Text(char** cell, const Caller& caller, const Failure_Text& missing) : _cell(cell)
{
    if (_cell.empty() || *_cell == nullptr)
        throw VRAX_Except(caller.source, caller.function, caller.line, missing);
}

} // namespace cimple
