// The administrative mode of the switch, around commands that need it.
#ifndef SWITCHACCESS_ADMIN_MODE_H
#define SWITCHACCESS_ADMIN_MODE_H

#include "switchaccess/Sml_Writes.h"

#include <atomic>

namespace cimple
{

// Entered at construction, left at the latest at the end of the scope:
//     Admin_Mode mode;
//     if (mode.entered() == 0) ... commands ...
//     const int left = mode.leave();
// When the switch refuses to take the mode back it stays this module's. The next one to enter gives it back
// first, so that one failed command does not keep everybody out for good.
class Admin_Mode
{
  public:
    Admin_Mode() : _entered(enter()), _held(_entered == 0) {}
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
        const int left = writeAttribute("Cmd.Switch.RelAdmin");
        if (left != 0)
            noteLeftBehind();
        return left;
    }

    // For whoever commands the mode by other means: to be called when the switch has refused to take it back,
    // and before asking for it.
    static void noteLeftBehind() { leftBehind = true; }
    static void giveBackLeftBehind()
    {
        // Whoever finds the mark is alone with it: nobody else can have the mode.
        if (leftBehind.exchange(false) && writeAttribute("Cmd.Switch.RelAdmin") != 0)
            leftBehind = true;
    }

  private:
    static int enter()
    {
        giveBackLeftBehind();
        const int entered = writeAttribute("Cmd.Switch.ReqAdmin");
        if (entered == 0)
            leftBehind = false;
        return entered;
    }

    static inline std::atomic<bool> leftBehind{false};

    int _entered;
    bool _held;
};

} // namespace cimple

#endif
