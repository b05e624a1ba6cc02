// The services by which the local switch is managed, enabled or not.
#include "switchProviders/VRAX_RemoteServiceAccessPoint_Provider.h"

#include "common/local_system.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/local_switch.h"

#include <cstring>
#include <string>

namespace cimple
{

namespace
{

using Is = VRAX_RemoteServiceAccessPoint;

constexpr Attribute<Is> kAttributes[] = {
    {"Oper.Switch.IPAddress"},
    {"Config.Switch.SNMPEnabled"},
    {"Config.Switch.WebEnabled"},
    {"Config.Switch.TelnetEnabled"},
    {"Config.Switch.SSHEnabled"},
};
constexpr std::size_t kAddress = entryOf(kAttributes, ".IPAddress");

// In the order in which they are published.
struct Service
{
    const char* name;
    const char* scheme; // of its URL
    std::size_t enabled;
};
constexpr Service kServices[] = {
    {"SNMP", "snmp", entryOf(kAttributes, ".SNMPEnabled")},
    {"Web", "http", entryOf(kAttributes, ".WebEnabled")},
    {"Telnet", "telnet", entryOf(kAttributes, ".TelnetEnabled")},
    {"SSH", "ssh", entryOf(kAttributes, ".SSHEnabled")},
};

// What a service's setting means: values of EnabledState and OperationalStatus. Any other text: unknown.
struct Setting
{
    const char* text;
    uint16 enabledState;
    uint16 operationalStatus;
};
constexpr Setting kSettings[] = {
    {"True", 2, 2},   // enabled, OK
    {"False", 3, 10}, // disabled, stopped
};
constexpr Setting kUnknown = {"", 0, 0};

const Setting& settingOf(const char* text)
{
    for (const Setting& setting : kSettings)
        if (std::strcmp(text, setting.text) == 0)
            return setting;
    return kUnknown;
}

constexpr uint16 kInfoFormatUrl = 200;
constexpr uint16 kEnabled = 2;               // EnabledDefault
constexpr uint16 kRequestNotApplicable = 12; // RequestedState

// As it stands in a URL: an IPv6 address in brackets (RFC 3986).
std::string hostOf(const std::string& address)
{
    return address.find(':') != std::string::npos ? "[" + address + "]" : address;
}

} // namespace

void VRAX_RemoteServiceAccessPoint_Provider::build(Map_Writer<VRAX_RemoteServiceAccessPoint>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    Attribute_Reader<Is> attributes(kAttributes);
    if (!attributes.read({}))
        fail(kReadFailed);
    const std::string host = hostOf(attributes.text(kAddress));

    for (const Service& service : kServices)
    {
        Owned<Is> point = make();
        setLocalSystem(*point, localWwn.text());
        point->Name.set((std::string(localWwn.text()) + ":" + service.name).c_str());
        point->ElementName.set(service.name);
        if (!host.empty())
            point->AccessInfo.set((std::string(service.scheme) + "://" + host).c_str());
        point->InfoFormat.set(kInfoFormatUrl);
        const Setting& setting = settingOf(attributes.text(service.enabled));
        point->EnabledState.set(setting.enabledState);
        point->RequestedState.set(kRequestNotApplicable);
        point->EnabledDefault.set(kEnabled);
        point->OperationalStatus.set(Array_uint16::make(setting.operationalStatus));
        add(map, point);
    }
}

} // namespace cimple
