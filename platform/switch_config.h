// Configuration records of the switch and of its ports, and the calls that read and write them.
//
// The records belong to the switch. A caller reads a record, changes the fields it knows and writes the
// record back; the reserved bytes carry settings of other services and must go back as they were read.
// Numbers are in the processor's byte order.
#ifndef PLATFORM_SWITCH_CONFIG_H
#define PLATFORM_SWITCH_CONFIG_H

#include "platform/xpl_types.h"

// Administrative states of a switch or port in a record.
enum xpl_AdminState : std::int32_t
{
    XPL_ADMIN_ONLINE = 1,
    XPL_ADMIN_OFFLINE = 2,
    XPL_ADMIN_DIAGNOSTICS = 3,
};

struct xpl_swSwitchConfig
{
    char symbolicName[33]; // at most 32 characters and the terminator
    std::uint8_t reserved0[3];
    std::int32_t adminState; // an xpl_AdminState
    std::uint8_t reserved1[20];
    std::uint8_t preferredDomainId; // 1 to 239 (FC-SW-3)
    std::uint8_t reserved2[3];
    std::int32_t domainIdLock;      // 0 unlocked, 1 locked
    std::uint8_t principalPriority; // 1 highest, 0xFE default, 0xFF never principal
    std::uint8_t reserved3[43];
};

static_assert(offsetof(xpl_swSwitchConfig, symbolicName) == 0 &&
                  offsetof(xpl_swSwitchConfig, adminState) == 36 &&
                  offsetof(xpl_swSwitchConfig, preferredDomainId) == 60 &&
                  offsetof(xpl_swSwitchConfig, domainIdLock) == 64 &&
                  offsetof(xpl_swSwitchConfig, principalPriority) == 68 && sizeof(xpl_swSwitchConfig) == 112,
              "layout shared with the switch firmware");

struct xpl_swPortConfig
{
    char symbolicName[256];  // at most 255 characters and the terminator
    std::int32_t adminState; // an xpl_AdminState
    std::uint8_t reserved[288];
};

static_assert(offsetof(xpl_swPortConfig, symbolicName) == 0 &&
                  offsetof(xpl_swPortConfig, adminState) == 256 && sizeof(xpl_swPortConfig) == 548,
              "layout shared with the switch firmware");

extern "C"
{

    // Fills *record with the configuration of the switch. `unit` is 0, the only switch in the chassis.
    // Returns 0, or an xpl_Status; on failure *record is left alone.
    int xpl_swSwitchGetConfig(xpl_Handle handle, std::uint32_t unit, xpl_swSwitchConfig* record);

    // Makes *record the configuration of the switch. Returns 0, or an xpl_Status and nothing is changed:
    // XPL_INVALID_PARAMETER for an unterminated name, an unknown state, domain ID or priority.
    // Only a changed administrative state acts: a switch that is in another state than it is configured to be
    // stays there while the record brings the configured one.
    int xpl_swSwitchSetConfig(xpl_Handle handle, const xpl_swSwitchConfig* record);

    // Resets the switch: ports go through a link reset and counters start again. The configuration is kept.
    int xpl_swSwitchForceReset(xpl_Handle handle);

    // Fills *record with the configuration of a local port. `unit` is 0. Returns 0, or an xpl_Status
    // (XPL_INVALID_PARAMETER for a port that does not exist); on failure *record is left alone.
    int
    xpl_swPortGetConfig(xpl_Handle handle, std::int32_t port, std::uint32_t unit, xpl_swPortConfig* record);

    // Makes *record the configuration of a local port. Writing an unchanged record resets the port's link.
    // Returns 0, or an xpl_Status and nothing is changed.
    int xpl_swPortSetConfig(xpl_Handle handle, std::int32_t port, const xpl_swPortConfig* record);
}

#endif
