// A text that the platform hands out, required.
#ifndef SWITCHACCESS_SWITCH_TEXT_H
#define SWITCHACCESS_SWITCH_TEXT_H

#include "support/VRAX_Except.h"
#include "switchaccess/XPL_Mem.h"

namespace cimple
{

// Who asks, for the log of a failure.
struct Caller
{
    const char* source;
    const char* function;
    int line = __builtin_LINE();
};

// Owns a text in a cell until the end of the scope:
//     const Switch_Text brand(get_Switch_Brand_Name(), {kSource, "load"}, "Failed to get brand name");
class Switch_Text
{
  public:
    // Throws the failure in the caller's name when there is no text.
    Switch_Text(char** cell, const Caller& caller, const Failure_Text& missing);

    const char* text() const { return *_cell; }

  private:
    XPL_Mem<char*> _cell;
};

} // namespace cimple

#endif
