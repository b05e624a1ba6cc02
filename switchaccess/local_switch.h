// The name of the local switch.
#ifndef SWITCHACCESS_LOCAL_SWITCH_H
#define SWITCHACCESS_LOCAL_SWITCH_H

#include "platform/switch_server.h"
#include "switchaccess/Switch_Text.h"

namespace cimple
{

constexpr Failure_Text kLocalWwnMissing = "Unable to retrieve localWWN";

// The WWN of the local switch; owns the platform's text until the end of the scope.
class Local_Switch_Wwn : public Switch_Text
{
  public:
    // Asks the switch; throws the failure in the caller's name when there is no WWN.
    explicit Local_Switch_Wwn(const Caller& caller, const Failure_Text& missing = kLocalWwnMissing)
        : Switch_Text(get_Local_Switch_World_Wide_Name(), caller, missing)
    {
    }
};

} // namespace cimple

#endif
