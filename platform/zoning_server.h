// Helper functions of the switch server for zoning.
#ifndef PLATFORM_ZONING_SERVER_H
#define PLATFORM_ZONING_SERVER_H

#include "platform/xpl_fzs.h"

// Writes the name of the active zone set into `name` (kZoneNameSize bytes); an empty one when none is active
// or the switch cannot be asked.
void get_Active_ZoneSet(char* name);

// Writes the text of a member into `text` (kZoneNameSize bytes): 16 upper-case hexadecimal digits of a WWN,
// six of an address, domain and port in hexadecimal without leading zeros around a colon ("1:A"), or an
// alias's name. `index` is the member's place in the two lists.
void formatMemberId(const xpl_fzs_zonemember_type_e* types,
                    const xpl_fzs_zonemember_identifier_u* identifiers,
                    char* text,
                    std::uint32_t index);

// The zoning edit session. There is one on the switch: it takes the administrative mode. Between its begin
// and its end the commands "Cmd.Zoning." of the attribute store change a copy of the configured database:
//   Cmd.Zoning.Zone.<zone>.AddZoneMember.<member>   Cmd.Zoning.Alias.<alias>.AddZoneMember.<member>
//   Cmd.Zoning.Zone.<zone>.RemZoneMember.<member>   Cmd.Zoning.Alias.<alias>.RemZoneMember.<member>
//   Cmd.Zoning.Alias.<alias>.Delete
// A member is a text of formatMemberId in either letter case, or domain and port as four hexadecimal digits.
// Of an alias and an address of the same text the alias is meant, but aliases have no aliases. A deleted
// alias goes from all zones. Commands are answered with XPL_INVALID_PARAMETER outside a session and for what
// is no name or member, XPL_FZS_UNKNOWN_NAME for a zone, alias or member that is not there,
// XPL_FZS_EXISTS_ALREADY for a member that is, and XPL_FZS_ACTIVE_MEMBER for one to be removed by which the
// active zone set is enforced: it has the zone with this member, or with one that the alias stands for.
//
// Each call returns a negative number when it fails: the second and third one when there is no session. A
// session ends with them even when they fail for another reason; its changes are lost then.
int getZoningEditMode(); // begins; fails while somebody has the administrative mode
int saveZoningEdit(); // makes the copy the database and ends; a save that fails drops the copy and ends, too
int cancelZoningEdit(); // drops the copy and ends

#endif
