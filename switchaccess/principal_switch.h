// What loads ask of the fabric's principal switch: its name.
#ifndef SWITCHACCESS_PRINCIPAL_SWITCH_H
#define SWITCHACCESS_PRINCIPAL_SWITCH_H

#include "platform/switch_server.h"
#include "switchaccess/XPL_Mem.h"

namespace cimple
{

// The WWN of the principal switch, in the switch's letter case; owns the platform's text until the end of the
// scope.
class Principal_Switch_Wwn
{
  public:
    Principal_Switch_Wwn() : _cell(get_Principal_Switch_World_Wide_Name()) {}

    // Null while the fabric has no principal switch, or when the switch cannot be asked.
    const char* text() const { return _cell.empty() ? nullptr : *_cell; }

  private:
    XPL_Mem<char*> _cell;
};

} // namespace cimple

#endif
