// The zoning edit session of the switch.
#ifndef SWITCHACCESS_ZONING_EDIT_H
#define SWITCHACCESS_ZONING_EDIT_H

#include "platform/zoning_server.h"
#include "switchaccess/Sml_Writes.h"

namespace cimple
{

// For the client whose request finds the session taken.
constexpr const char* kNoZoningEdit = "Somebody else has the switch's administrative mode";

// Begins at construction; gives up what was not saved at the latest at the end of the scope:
//     Zoning_Edit edit;
//     if (!edit.begun()) ...
//     const int result = edit.command("Cmd.Zoning.Alias.%s.Delete", {alias});
//     if (result != 0) ... edit.cancel() ...
//     if (!edit.save()) ...
class Zoning_Edit
{
  public:
    Zoning_Edit() : _open(getZoningEditMode() >= 0) {}
    ~Zoning_Edit()
    {
        if (_open)
            cancel();
    }
    Zoning_Edit(const Zoning_Edit&) = delete;
    Zoning_Edit& operator=(const Zoning_Edit&) = delete;

    // False while somebody has the switch's administrative mode.
    bool begun() const { return _open; }

    // 0, or the platform's status; as writeAttribute().
    static int command(const char* format, std::initializer_list<const char*> arguments)
    {
        return writeAttribute(format, arguments);
    }

    // The switch ends the session also when it does not save.
    bool save()
    {
        _open = false;
        return saveZoningEdit() >= 0;
    }
    void cancel()
    {
        _open = false;
        cancelZoningEdit();
    }

  private:
    bool _open;
};

} // namespace cimple

#endif
