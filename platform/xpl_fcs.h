// Fabric services: the switches of the fabric, their ports, and what each port is linked to.
//
// Each call hands out an array in a cell: the array is freed with free(), then the cell itself is given back
// with xpl_libFreeMemory(). The array is null when it has no elements. When the call fails the cell is null,
// *count is 0 and *error is an xpl_Status; otherwise *error is 0. The elements are copies: they stay as they
// are whatever happens to the fabric, and the next call may find it changed. All calls may be made from any
// thread, with or without the data cache's lock.
#ifndef PLATFORM_XPL_FCS_H
#define PLATFORM_XPL_FCS_H

#include "platform/xpl_types.h"

// A World Wide Name (FC-FS-3) as 16 hexadecimal digits and the terminator, in the letter case of the data
// cache.
constexpr std::size_t kXplWwnSize = 17;

struct xpl_fcsSwitch
{
    char wwn[kXplWwnSize];
    std::uint8_t reserved[3];
    std::int32_t domainId; // 1 to 239 (FC-SW-3)
};

struct xpl_fcsPort
{
    char wwn[kXplWwnSize]; // the name by which the data cache knows the port
    std::uint8_t reserved[3];
    std::int32_t number;
};

enum xpl_fcsPortKind : std::int32_t
{
    XPL_FCS_SWITCH_PORT = 1,
    XPL_FCS_NODE_PORT = 2,
};

// The port at the other end of a link.
struct xpl_fcsAttached
{
    char wwn[kXplWwnSize];
    std::uint8_t reserved[3];
    std::int32_t kind;     // an xpl_fcsPortKind
    std::int32_t domainId; // the switch of a switch port; 0 for a node port
};

extern "C"
{

    // The switches of the fabric, the local one included, by rising domain ID.
    xpl_fcsSwitch** xpl_fcsGetSwitchList(xpl_Handle handle, std::uint32_t* count, std::int32_t* error);

    // The ports of a switch by rising number, whatever their state. XPL_UNKNOWN_KEY when no switch has this
    // domain ID.
    xpl_fcsPort**
    xpl_fcsGetPortList(xpl_Handle handle, std::int32_t domainId, std::uint32_t* count, std::int32_t* error);

    // What a port is linked to at present: nothing, a port of another switch, or one or more node ports
    // (several on a loop, or behind one that has virtual ports) by rising address. A link counts while it is
    // up. Both ends of a link between switches report it. XPL_UNKNOWN_KEY when there is no such switch or
    // port.
    xpl_fcsAttached** xpl_fcsGetPortTopology(xpl_Handle handle,
                                             std::int32_t domainId,
                                             std::int32_t port,
                                             std::uint32_t* count,
                                             std::int32_t* error);
}

#endif
