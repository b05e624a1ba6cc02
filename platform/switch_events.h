// The switch's events, as the firmware hands them out while they happen.
#ifndef PLATFORM_SWITCH_EVENTS_H
#define PLATFORM_SWITCH_EVENTS_H

#include <cstdint>

// What happened. Beside each: the fields of xpl_SwitchEvent that say to whom. switchWwn, where nothing else
// is said, is the local switch. A component is added when its slot was empty, or when one that works takes
// the place of one that had failed.
enum xpl_SwitchEventType : std::int32_t
{
    XPL_EVENT_NONE = 0,
    XPL_EVENT_FABRIC_ADDED = 1,          // fabricWwn
    XPL_EVENT_FABRIC_REMOVED = 2,        // fabricWwn
    XPL_EVENT_FABRIC_TOPOLOGY = 3,       // fabricWwn; subject "merged" or "segmented"
    XPL_EVENT_SWITCH_ADDED = 4,          // fabricWwn, switchWwn: the one that came
    XPL_EVENT_SWITCH_REMOVED = 5,        // fabricWwn, switchWwn: the one that went
    XPL_EVENT_SWITCH_STATUS = 6,         // fabricWwn, switchWwn: any of the fabric; status, previousStatus
    XPL_EVENT_BLADE_ADDED = 7,           // switchWwn, location
    XPL_EVENT_BLADE_REMOVED = 8,         // switchWwn, location
    XPL_EVENT_BLADE_STATUS = 9,          // switchWwn, location; status, previousStatus
    XPL_EVENT_PORT_CREATED = 10,         // switchWwn, portWwn, isLocal
    XPL_EVENT_PORT_DELETED = 11,         // switchWwn, portWwn, isLocal
    XPL_EVENT_PORT_STATUS = 12,          // fabricWwn, switchWwn, portWwn; status, previousStatus
    XPL_EVENT_NODE_LOGGED_IN = 13,       // switchWwn, portWwn: of the switch's port
    XPL_EVENT_NODE_LOGGED_OUT = 14,      // switchWwn, portWwn: of the switch's port
    XPL_EVENT_PRINCIPAL_CHANGED = 15,    // fabricWwn
    XPL_EVENT_CPU_ADDED = 16,            // switchWwn, location
    XPL_EVENT_CPU_REMOVED = 17,          // switchWwn, location
    XPL_EVENT_CPU_FAILED = 18,           // switchWwn, location
    XPL_EVENT_FAN_ADDED = 19,            // switchWwn, location
    XPL_EVENT_FAN_REMOVED = 20,          // switchWwn, location
    XPL_EVENT_FAN_FAILED = 21,           // switchWwn, location
    XPL_EVENT_POWER_SUPPLY_ADDED = 22,   // switchWwn, location
    XPL_EVENT_POWER_SUPPLY_REMOVED = 23, // switchWwn, location
    XPL_EVENT_POWER_SUPPLY_FAILED = 24,  // switchWwn, location
    XPL_EVENT_USER_ADDED = 25,           // switchWwn; subject: the user's name
    XPL_EVENT_USER_REMOVED = 26,         // switchWwn; subject: the user's name
    XPL_EVENT_ZONE_SET_ACTIVATED = 27,   // fabricWwn, switchWwn; subject: the zone set's name
    XPL_EVENT_ZONING_CHANGED = 28,       // switchWwn: the configured database
    XPL_EVENT_PASSWORD_CHANGED = 29,     // switchWwn; subject: the user's name
    XPL_EVENT_LOGIN_FAILED = 30,         // switchWwn; subject: the user's name
    XPL_EVENT_ENVIRONMENT = 31,          // switchWwn; subject: "Temperature" or "Voltage"; value, location
    // Beyond what clients can subscribe to.
    XPL_EVENT_SUBSCRIPTIONS_CHANGED =
        32, // switchWwn: its CIM listeners or subscriptions, whoever changed them
};

constexpr std::int32_t kLastAlertEvent = XPL_EVENT_ENVIRONMENT;

// The firmware's, for the duration of the callback. Texts that an event does not have are empty, never null.
struct xpl_SwitchEvent
{
    std::int32_t type;     // xpl_SwitchEventType; others may come and are of no interest
    const char* switchWwn; // WWNs are 16 hexadecimal digits in either letter case
    const char* fabricWwn;
    const char* portWwn;
    const char* subject;
    const char* value;    // of an environmental event, with its unit: "71.50 C"; or "no reading"
    const char* location; // of a component: "power supply 2", "fan 1", "CPU 1", "blade 3", or a sensor's name
    const std::uint16_t* status; // CIM OperationalStatus values (CIM_ManagedSystemElement) now
    std::uint32_t statusCount;
    const std::uint16_t* previousStatus; // and before
    std::uint32_t previousStatusCount;
    bool isLocal; // the port is one of the local switch's
};

extern "C"
{
    // Called on a thread of the firmware, one event after the other, in the order in which they happened.
    // What they tell of is done. The thread must not be held up: no calls of the platform, no waiting.
    typedef void (*xpl_SwitchEventReceiver)(const xpl_SwitchEvent* event, void* context);

    // There is one receiver; another one takes its place, and null ends it. When this returns, the former
    // receiver is not running and will not be called again, so it must not be called from within a receiver.
    // Events that happen while nobody receives are lost.
    void xpl_swReceiveEvents(xpl_SwitchEventReceiver receiver, void* context);
}

#endif
