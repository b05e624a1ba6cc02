// The administrative mode of the switch, around commands that need it.
#ifndef SWITCHACCESS_ADMIN_MODE_H
#define SWITCHACCESS_ADMIN_MODE_H

#include "switchaccess/Sml_Writes.h"

namespace cimple
{

// Entered at construction, left at the latest at the end of the scope:
//     Admin_Mode mode;
//     if (mode.entered() == 0) ... commands ...
//     const int left = mode.leave();
class Admin_Mode
{
  public:
    Admin_Mode() : _entered(writeAttribute("Cmd.Switch.ReqAdmin")), _held(_entered == 0) {}
    ~Admin_Mode()
    {
        if (_held)
            leave();
    }
    Admin_Mode(const Admin_Mode&) = delete;
    Admin_Mode& operator=(const Admin_Mode&) = delete;

    // 0, or the platform's status: somebody else has the mode, for example.
    int entered() const { return _entered; }

    // 0, or the platform's status.
    int leave()
    {
        _held = false;
        return writeAttribute("Cmd.Switch.RelAdmin");
    }

  private:
    int _entered;
    bool _held;
};

} // namespace cimple

#endif
