// What can be asked of the logs of the local switch.
#include "switchProviders/VRAX_RecordLogCapabilities_Provider.h"

#include "switchaccess/local_switch.h"

#include <iterator>
#include <string>

namespace cimple
{

namespace
{

constexpr char kUser[] = "User";
constexpr char kAlarm[] = "Alarm";
constexpr uint16 kUserLogStates[] = {2, 6}; // started, stopped; the alarm log is always on

} // namespace

void VRAX_RecordLogCapabilities_Provider::build(Map_Writer<VRAX_RecordLogCapabilities>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    for (const char* log : {kUser, kAlarm})
    {
        Owned<VRAX_RecordLogCapabilities> capabilities = make();
        const std::string id = std::string("VRAX:RecordLogCapabilities:") + localWwn.text() + ":" + log;
        capabilities->InstanceID.set(id.c_str());
        capabilities->ElementName.set((std::string(log) + " RecordLog Capabilities").c_str());
        capabilities->ElementNameEditSupported.set(false);
        if (log == kUser)
        {
            capabilities->RequestedStatesSupported.set(
                Array_uint16(kUserLogStates, std::size(kUserLogStates)));
        }
        add(map, capabilities);
    }
}

} // namespace cimple
