// The name of the local switch.
#ifndef SWITCHACCESS_LOCAL_SWITCH_H
#define SWITCHACCESS_LOCAL_SWITCH_H

#include "support/VRAX_Except.h"
#include "switchaccess/XPL_Mem.h"

namespace cimple
{

constexpr Failure_Text kLocalWwnMissing = "Unable to retrieve localWWN";

// The WWN of the local switch; owns the platform's text until the end of the scope.
class Local_Switch_Wwn
{
  public:
    // Asks the switch; throws a critical failure in the name of `source`'s load, at the caller's line, when
    // there is no WWN.
    explicit Local_Switch_Wwn(const char* source,
                              const Failure_Text& missing = kLocalWwnMissing,
                              int line = __builtin_LINE())
        : Local_Switch_Wwn(source, "load", missing, line)
    {
    }
    // The same in the name of another operation.
    Local_Switch_Wwn(const char* source,
                     const char* function,
                     const Failure_Text& missing,
                     int line = __builtin_LINE());

    const char* text() const { return *_cell; }

  private:
    XPL_Mem<char*> _cell;
};

} // namespace cimple

#endif
