// The name of the local switch.
#ifndef COMMON_LOCAL_SWITCH_H
#define COMMON_LOCAL_SWITCH_H

#include "common/XPL_Mem.h"

namespace cimple
{

// The WWN of the local switch; owns the platform's text until the end of the scope.
class Local_Switch_Wwn
{
  public:
    // Asks the switch; throws a critical VRAX_Except in the name of `source`'s load, at the caller's line,
    // when there is no WWN.
    explicit Local_Switch_Wwn(const char* source, int line = __builtin_LINE());

    const char* text() const { return *_cell; }

  private:
    XPL_Mem<char*> _cell;
};

} // namespace cimple

#endif
