// The zoning library: the fabric's zone sets, zones, zone aliases and their members.
//
// There are two databases. The configured one is what administrators edit; it has zone sets, zones and
// aliases. The active one is the copy of a configured zone set that the fabric enforces since it was
// activated; its zones have no aliases any more, only what those stood for. It stays as it is when the
// configured one changes. Calls that take the name of a zone set or zone mean the configured one, or the
// active one when only that has the name.
//
// Calls return 0 or an xpl_Status or xpl_fzsStatus, and nothing is handed out or changed then. Changes take
// effect at once. They need the switch's administrative mode for their own duration: XPL_FZS_LOCKED while
// somebody has it, an open edit session (platform/zoning_server.h) included. Lists are single blocks which
// the caller gives back with xpl_libFreeMemory(); null when they have no elements. All calls may be made from
// any thread.
#ifndef PLATFORM_XPL_FZS_H
#define PLATFORM_XPL_FZS_H

#include "platform/xpl_types.h"

// Names have at most 64 characters and a terminator: letters, digits and "-_$^" after a first letter
// (FC-GS-4). Lists of names are packed: one such field after the other.
constexpr std::size_t kZoneNameSize = 65;

enum xpl_fzsStatus : std::int32_t
{
    XPL_FZS_EXISTS_ALREADY = 69, // adding a member that the zone or alias has, by a command
    XPL_FZS_LOCKED = 100,        // somebody else has the administrative mode
    XPL_FZS_NO_MORE = 103,       // a First/Next key of zoning has no further element
    XPL_FZS_NAME_TAKEN = 161,    // creating what is there already
    XPL_FZS_UNKNOWN_NAME = 162,  // no such zone set, zone or alias
    XPL_FZS_MEMBER_EXISTS = 163, // adding a member that the zone has
    XPL_FZS_LIMIT_REACHED = 164, // the database is full, see xpl_fzsGetZoningLimitations
    XPL_FZS_ACTIVE_MEMBER = 166, // removing a member by which the active zone set is enforced
    XPL_FZS_NO_ACTIVE_ZONESET = 167,
    XPL_FZS_ALIAS_MEMBER_EXISTS = 4177, // adding a member that the alias has
};

enum xpl_fzs_zonemember_type_e : std::int32_t
{
    XPL_ZMT_NODEPORTNAME = 1, // the WWN of a node or of its port
    XPL_ZMT_DOMAINPORT = 2,   // a port of a switch
    XPL_ZMT_NODEPORTID = 3,   // a Fibre Channel address
    XPL_ZMT_ALIAS = 5,        // all members of an alias; in zones of the configured database only
};

// Which field counts is told by the member's type.
union xpl_fzs_zonemember_identifier_u
{
    std::uint8_t nodePortName[8]; // the most significant byte first, as are the others
    struct
    {
        std::uint8_t domain; // 1 to 239 (FC-SW-3)
        std::uint8_t port;
    } domainPort;
    std::uint8_t nodePortId[3];
    char alias[kZoneNameSize];
};

// Types of zones. Type 1 is enforced by the name server alone, the others by the switching hardware.
enum xpl_fzsZoneType : std::int32_t
{
    XPL_ZT_SOFT = 1,
    XPL_ZT_HARD_VIRTUAL_FABRIC = 2,
    XPL_ZT_HARD_ACL = 3,
};

// How many of each the database can hold.
struct xpl_fzsZoningLimitations
{
    std::uint32_t zonesets;
    std::uint32_t zones;
    std::uint32_t zoneMembers; // of all zones together
    std::uint32_t zonesPerZoneset;
    std::uint32_t zoneAliases;
};

// Objects of the library that hold what a zone set or zone is to be before it is in the database. Made and
// destroyed by the caller.
struct xpl_Zoneset;
struct xpl_Zone;

extern "C"
{

    // --- Reading ---

    // Names of the configured database, in order of creation.
    int xpl_fzsGetZonesetList(xpl_Handle handle, std::uint32_t* count, char** names);
    int xpl_fzsGetZoneList(xpl_Handle handle, std::uint32_t* count, char** names);
    int xpl_fzsGetZoneAliasList(xpl_Handle handle, std::uint32_t* count, char** names);
    // The zones of a zone set, in the order in which they were added.
    int xpl_fzsGetZonesetZoneList(xpl_Handle handle, const char* zoneset, std::uint32_t* count, char** names);
    // An xpl_fzsZoneType.
    int xpl_fzsGetZoneType(xpl_Handle handle, const char* zone, std::int32_t* type);
    // Two lists of the same length.
    int xpl_fzsGetZoneMemberList(xpl_Handle handle,
                                 const char* zone,
                                 std::uint32_t* count,
                                 xpl_fzs_zonemember_type_e** types,
                                 xpl_fzs_zonemember_identifier_u** identifiers);
    int xpl_fzsGetZoneAliasMemberList(xpl_Handle handle,
                                      const char* alias,
                                      std::uint32_t* count,
                                      xpl_fzs_zonemember_type_e** types,
                                      xpl_fzs_zonemember_identifier_u** identifiers);
    // `name` has kZoneNameSize bytes. XPL_FZS_NO_ACTIVE_ZONESET, and an empty name, when none is active.
    int xpl_fzsGetActiveZonesetName(xpl_Handle handle, char* name);
    int xpl_fzsGetZoningLimitations(xpl_Handle handle, xpl_fzsZoningLimitations* limits);

    // --- Changing the configured database ---
    // XPL_INVALID_PARAMETER for a null, empty or too long name, XPL_INVALID_NAME for one with other
    // characters, XPL_FZS_UNKNOWN_NAME for one that is not there, XPL_FZS_NAME_TAKEN for a new one that is,
    // XPL_FZS_LIMIT_REACHED when there is no room.

    // Null when memory ran out or the name is null or too long for the object.
    xpl_Zoneset* xpl_ZonesetCreate(const char* name);
    void xpl_ZonesetDestroy(xpl_Zoneset* zoneset);
    xpl_Zone* xpl_ZoneCreate(const char* name);
    int xpl_ZoneSetType(xpl_Zone* zone, std::int32_t type); // XPL_INVALID_PARAMETER for no xpl_fzsZoneType
    void xpl_ZoneDestroy(xpl_Zone* zone);

    int xpl_fzsAddZoneset(xpl_Handle handle, const xpl_Zoneset* zoneset);
    int xpl_fzsCreateZone(xpl_Handle handle, const xpl_Zone* zone);
    int xpl_fzsAddZoneAlias(xpl_Handle handle, const char* alias);
    // A zone that is in the set already stays there once: XPL_FZS_NAME_TAKEN.
    int xpl_fzsAddZone(xpl_Handle handle, const char* zone, const char* zoneset);
    // All or none. XPL_FZS_MEMBER_EXISTS, or XPL_FZS_ALIAS_MEMBER_EXISTS for an alias; XPL_INVALID_PARAMETER
    // for an unknown type, a domain or address that no fabric has, and an alias in an alias.
    int xpl_fzsAddZoneMembers(xpl_Handle handle,
                              const char* zone,
                              std::uint32_t count,
                              const xpl_fzs_zonemember_type_e* types,
                              const xpl_fzs_zonemember_identifier_u* identifiers);
    int xpl_fzsAddZoneAliasMembers(xpl_Handle handle,
                                   const char* alias,
                                   std::uint32_t count,
                                   const xpl_fzs_zonemember_type_e* types,
                                   const xpl_fzs_zonemember_identifier_u* identifiers);
    // The zones of the set stay; a zone goes from all sets.
    int xpl_fzsRemoveZoneset(xpl_Handle handle, const char* zoneset);
    int xpl_fzsDeleteZone(xpl_Handle handle, const char* zone);

    // --- What the fabric enforces ---

    // Copies a configured zone set to the active database of every switch of the fabric that is reached.
    // XPL_INVALID_PARAMETER for a zone set without zones.
    int xpl_fzsActivateZoneset(xpl_Handle handle, const char* zoneset);
    // XPL_FZS_NO_ACTIVE_ZONESET when none is.
    int xpl_fzsDeactivateZoneset(xpl_Handle handle);
}

#endif
