// Alerts of the switch and the fabric, after the message registry of the SNIA.
#include "indicationProviders/CIM_AlertIndication_Provider.h"

#include "indicationProviders/deliver.h"
#include "support/substitute.h"
#include "switchaccess/Attribute.h"

#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace cimple
{

namespace
{

constexpr const char* kSource = CIM_AlertIndication_Provider::kSource;

// --- The alerts

// What stands in the places of a message.
enum class Word
{
    Switch, // World Wide Names
    Fabric,
    Port,
    Subject, // texts of the event
    Value,
    Location,
    Action, // words of Alert_Event
    Component,
    PortStatus,
    SwitchStatus
};

struct Alert
{
    const char* id;
    const char* builder;      // the alert's function in the log
    const char* elementClass; // of the element that is named by its World Wide Name: a switch, or the fabric
    uint16 type;              // CIM_AlertIndication.AlertType
    uint16 severity;          // and PerceivedSeverity
    const char* description;
    const char* message; // a format of support/substitute.h
    std::initializer_list<Word> arguments;

    constexpr bool isOfSwitch() const { return std::string_view(elementClass) == "VRAX_FCSwitch"; }
};

// Values of AlertType and PerceivedSeverity.
constexpr uint16 kDevice = 5;
constexpr uint16 kEnvironmental = 6;
constexpr uint16 kSecurity = 8;
constexpr uint16 kInformation = 2;
constexpr uint16 kWarning = 3;
constexpr uint16 kMinor = 4;
constexpr uint16 kMajor = 5;

constexpr Alert kCore1 = {"Core1",
                          "indicateCore1Alert",
                          "VRAX_FCSwitch",
                          kDevice,
                          kMinor,
                          "Redundancy",
                          "Switch %s had redundancy failure for %s at %s",
                          {Word::Switch, Word::Component, Word::Location}};
constexpr Alert kCore2 = {"Core2",
                          "indicateCore2Alert",
                          "VRAX_FCSwitch",
                          kEnvironmental,
                          kMinor,
                          "Environmental",
                          "Switch %s had an environmental problem of type %s of %s at %s",
                          {Word::Switch, Word::Subject, Word::Value, Word::Location}};
constexpr Alert kCore3 = {"Core3",
                          "indicateCore3Alert",
                          "VRAX_FCSwitch",
                          kDevice,
                          kMinor,
                          "FRU Operation",
                          "Switch %s had a Field Replaceable Unit (FRU) %s on %s at %s",
                          {Word::Switch, Word::Action, Word::Component, Word::Location}};
constexpr Alert kCore4 = {"Core4",
                          "indicateCore4Alert",
                          "VRAX_FCSwitch",
                          kSecurity,
                          kInformation,
                          "Password change",
                          "Switch %s password has changed for user %s",
                          {Word::Switch, Word::Subject}};
constexpr Alert kCore5 = {"Core5",
                          "indicateCore5Alert",
                          "VRAX_FCSwitch",
                          kSecurity,
                          kInformation,
                          "User or Account Operation",
                          "Switch %s user %s %s",
                          {Word::Switch, Word::Subject, Word::Action}};
constexpr Alert kCore9 = {"Core9",
                          "indicateCore9Alert",
                          "VRAX_FCSwitch",
                          kSecurity,
                          kWarning,
                          "User Login Failure",
                          "Switch %s had the user %s attempted login fail",
                          {Word::Switch, Word::Subject}};
constexpr Alert kCore12 = {"Core12",
                           "indicateCore12Alert",
                           "VRAX_FCSwitch",
                           kDevice,
                           kWarning,
                           "Port Status Changed",
                           "Switch %s has FC Port %s in Fabric %s status changed to %s",
                           {Word::Switch, Word::Port, Word::Fabric, Word::PortStatus}};
constexpr Alert kFC1 = {"FC1",
                        "indicateFC1Alert",
                        "VRAX_FCSwitch",
                        kEnvironmental,
                        kInformation,
                        "Zone Database Change",
                        "Zone database changed for Switch %.16s",
                        {Word::Switch}};
constexpr Alert kFC2 = {"FC2",
                        "indicateFC2Alert",
                        "VRAX_Fabric",
                        kEnvironmental,
                        kMinor,
                        "ZoneSet Activated",
                        "Zoneset %.64s was activated for fabric %.16s",
                        {Word::Subject, Word::Fabric}};
constexpr Alert kFC5 = {"FC5",
                        "indicateFC5Alert",
                        "VRAX_Fabric",
                        kDevice,
                        kMajor,
                        "Switch Status Changed",
                        "Switch %s in Fabric %s status changed to %s",
                        {Word::Switch, Word::Fabric, Word::SwitchStatus}};
constexpr Alert kFC6 = {"FC6",
                        "indicateFC6Alert",
                        "VRAX_SAN",
                        kDevice,
                        kMinor,
                        "Fabric Merge/Segmentation",
                        "%s has detected a %s",
                        {Word::Fabric, Word::Subject}};
constexpr Alert kFC7 = {"FC7",
                        "indicateFC7Alert",
                        "VRAX_Fabric",
                        kDevice,
                        kMinor,
                        "Switch Added/Removed",
                        "The fabric %s has detected switch %s has been %s",
                        {Word::Fabric, Word::Switch, Word::Action}};
constexpr Alert kFC8 = {"FC8",
                        "indicateFC8Alert",
                        "VRAX_SAN",
                        kDevice,
                        kMajor,
                        "Fabric Added/Removed",
                        "Fabric %s was %s",
                        {Word::Fabric, Word::Action}};

// --- The events that raise them

struct Alert_Event
{
    std::int32_t event;
    const Alert& alert;
    Filters filters;
    const char* action = "";
    const char* component = "";
    const char* messageId = nullptr; // null: the alert's own
};

// An event with several rows raises one alert after the other. Zoning alerts have a number for those who
// subscribed by number.
constexpr Alert_Event kEvents[] = {
    {XPL_EVENT_FABRIC_ADDED, kFC8, {29, 16}, "added"},
    {XPL_EVENT_FABRIC_REMOVED, kFC8, {29, 16}, "removed"},
    {XPL_EVENT_FABRIC_TOPOLOGY, kFC6, {27, 16}},
    {XPL_EVENT_SWITCH_ADDED, kFC7, {28, 16}, "added"},
    {XPL_EVENT_SWITCH_STATUS, kFC5, {26, 16}},
    {XPL_EVENT_BLADE_ADDED, kCore3, {19, 16}, "added", "IOBlade"},
    {XPL_EVENT_BLADE_REMOVED, kCore3, {19, 16}, "removed", "IOBlade"},
    {XPL_EVENT_PORT_STATUS, kCore12, {23, 16}},
    {XPL_EVENT_CPU_ADDED, kCore3, {19, 16}, "added", "CPU"},
    {XPL_EVENT_CPU_REMOVED, kCore1, {17, 16}, "", "CPU Component"},
    {XPL_EVENT_CPU_REMOVED, kCore3, {19, 16}, "removed", "CPU"},
    {XPL_EVENT_CPU_FAILED, kCore1, {17, 16}, "", "CPU Component"},
    {XPL_EVENT_FAN_ADDED, kCore3, {19, 16}, "added", "Fan"},
    {XPL_EVENT_FAN_REMOVED, kCore1, {17, 16}, "", "Fan Component"},
    {XPL_EVENT_FAN_REMOVED, kCore3, {19, 16}, "removed", "Fan"},
    {XPL_EVENT_FAN_FAILED, kCore1, {17, 16}, "", "Fan Component"},
    {XPL_EVENT_POWER_SUPPLY_ADDED, kCore3, {19, 16}, "added", "PowerSupply"},
    {XPL_EVENT_POWER_SUPPLY_REMOVED, kCore1, {17, 16}, "", "Power Component"},
    {XPL_EVENT_POWER_SUPPLY_REMOVED, kCore3, {19, 16}, "removed", "PowerSupply"},
    {XPL_EVENT_POWER_SUPPLY_FAILED, kCore1, {17, 16}, "", "Power Component"},
    {XPL_EVENT_USER_ADDED, kCore5, {21, 16}, "added"},
    {XPL_EVENT_USER_REMOVED, kCore5, {21, 16}, "removed"},
    {XPL_EVENT_ZONE_SET_ACTIVATED, kFC2, {14, 15, 16}, "", "", "33"},
    {XPL_EVENT_ZONE_SET_ACTIVATED, kFC2, {25, 16}},
    {XPL_EVENT_ZONING_CHANGED, kFC1, {12, 13, 16}, "", "", "32"},
    {XPL_EVENT_ZONING_CHANGED, kFC1, {24, 16}},
    {XPL_EVENT_PASSWORD_CHANGED, kCore4, {20, 16}},
    {XPL_EVENT_LOGIN_FAILED, kCore9, {22, 16}},
    {XPL_EVENT_ENVIRONMENT, kCore2, {18, 16}},
};

constexpr Event_Types knownEvents()
{
    Event_Types types = 0;
    for (const Alert_Event& row : kEvents)
        types |= eventType(row.event);
    return types;
}

// --- Words

// By value of OperationalStatus.
constexpr const char* kStatusWords[] = {"Unknown",
                                        "Other",
                                        "Ok",
                                        "Degraded",
                                        "Stressed",
                                        "Predictive Failure",
                                        "Error",
                                        "Non-Recoverable Error",
                                        "Starting",
                                        "Stopping",
                                        "Stopped",
                                        "In Service",
                                        "No Contact",
                                        "Lost Communication",
                                        "Aborted",
                                        "Dormant",
                                        "Supporting Entity in Error",
                                        "Completed"};

const char* portStatusWord(uint16 value)
{
    return value < std::size(kStatusWords) ? kStatusWords[value] : "Unknown Status";
}

// Of a switch only these are told.
const char* switchStatusWord(uint16 value)
{
    const bool isTold = value == 0 || value == 2 || value == 10 || value == 11;
    return isTold ? kStatusWords[value] : "Unknown Status";
}

std::string joined(const Array_uint16& values, const char* (*word)(uint16))
{
    std::string result;
    for (std::size_t i = 0; i < values.size(); ++i)
        result.append(i > 0 ? ", " : "").append(word(values[i]));
    return result;
}

std::string textOf(Word word, const Alert_Event& row, const Switch_Event& event)
{
    switch (word)
    {
    case Word::Switch:
        return event.switchWwn.toString();
    case Word::Fabric:
        return event.fabricWwn.toString();
    case Word::Port:
        return event.portWwn.toString();
    case Word::Subject:
        return event.subject;
    case Word::Value:
        return event.value;
    case Word::Location:
        return event.location;
    case Word::Action:
        return row.action;
    case Word::Component:
        return row.component;
    case Word::PortStatus:
        return joined(event.status, portStatusWord);
    case Word::SwitchStatus:
        return joined(event.status, switchStatusWord);
    }
    return "";
}

// --- Instances

constexpr std::size_t kMessageSize = 256; // of the message with its end; longer ones are cut
constexpr std::size_t kPathSize = 128;

String getSystemPath(const char* className, const char* name)
{
    char path[kPathSize];
    substitute(
        path, sizeof(path), "%1$.20s.CreationClassName=\"%1$.20s\",Name=\"%2$.16s\"", {className, name});
    return path;
}

// What the alert is about: a switch bears its name in upper case, as it is published, and the fabric the one
// that the principal switch gave it.
String alertingElement(const Alert& alert, const Switch_Event& event)
{
    return alert.isOfSwitch()
               ? getSystemPath(alert.elementClass, inUpperCase(event.switchWwn.c_str()).c_str())
               : getSystemPath(alert.elementClass, event.fabricWwn.c_str());
}

void traceArguments(const Alert& alert, const std::vector<std::string>& texts, const Switch_Event& event)
{
    if (!cim_log_enabled(kLogInfo))
        return;
    std::string list;
    std::size_t i = 0;
    for (const Word word : alert.arguments)
    {
        if (word == Word::PortStatus)
            cim_log(kLogInfo, "portSatus.size() = %d\n", static_cast<int>(event.status.size()));
        // The status is an array, and stands last.
        if (word != Word::PortStatus && word != Word::SwitchStatus)
            list.append(i > 0 ? ", " : "").append(texts[i]);
        ++i;
    }
    cim_log(kLogInfo, "AlertIndication - %s: %s\n", alert.id, list.c_str());
}

Owned<Instance> indicate(const Alert_Event& row, const Switch_Event& event)
{
    const Alert& alert = row.alert;
    std::vector<std::string> texts;
    std::vector<const char*> arguments;
    for (const Word word : alert.arguments)
        texts.push_back(textOf(word, row, event));
    traceArguments(alert, texts, event);

    Owned<CIM_AlertIndication> indication = makeNull<CIM_AlertIndication>();
    if (!indication)
    {
        throw VRAX_Except(
            kSource, alert.builder, __LINE__, "Unable to create instance for %s", {alert.builder});
    }
    Array_String messageArguments;
    if (alert.isOfSwitch())
        messageArguments.append("Switch");
    for (const std::string& text : texts)
    {
        messageArguments.append(text.c_str());
        arguments.push_back(text.c_str());
    }
    char message[kMessageSize];
    substitute(message, sizeof(message), alert.message, arguments.data(), arguments.size());

    indication->IndicationTime.set(Datetime::now());
    indication->PerceivedSeverity.set(alert.severity);
    indication->AlertType.set(alert.type);
    indication->ProbableCause.set(0);
    indication->AlertingManagedElement.set(alertingElement(alert, event));
    indication->OwningEntity.set("SNIA");
    indication->MessageID.set(row.messageId != nullptr ? row.messageId : alert.id);
    indication->Description.set(alert.description);
    indication->Message.set(message);
    indication->MessageArguments.set(messageArguments);
    return indication;
}

void handle(const Switch_Event& event)
{
    for (const Alert_Event& row : kEvents)
    {
        if (row.event != event.type)
            continue;
        const auto build = [&] { return indicate(row, event); };
        deliver(kSource, row.alert.builder, row.filters, std::cref(build));
    }
}

constexpr Event_Handling kHandling = {kSource,
                                      "_indication_thread",
                                      Indication_Kind::Alert,
                                      knownEvents(),
                                      handle,
                                      "Alert indications are enabled\n",
                                      "Alert indications are disabled\n"};

} // namespace

const Event_Handling& CIM_AlertIndication_Provider::handling()
{
    return kHandling;
}

} // namespace cimple
