// The forms in which clients name zone members, and what the switch makes of them.
#ifndef SWITCHACCESS_ZONE_MEMBERS_H
#define SWITCHACCESS_ZONE_MEMBERS_H

#include "platform/xpl_fzs.h"

#include <cimple/cimple.h>

#include <string>

namespace cimple
{

// Values of CIM_ConnectivityMembershipSettingData.ConnectivityMemberType.
constexpr uint16 kMemberIsWwn = 2;
constexpr uint16 kMemberIsAddress = 3;
constexpr uint16 kMemberIsSwitchPort = 4;

// The member as the zoning commands of the attribute store name it: 16 or 6 hexadecimal digits as they are;
// domain and port in decimal, "1:10", as two hexadecimal digits each, "010a". Empty for an identifier of
// another form, and for a domain or port above 255.
std::string memberOfCommand(uint16 type, const String& id);

// A member as the zoning library takes it.
struct Member_Record
{
    xpl_fzs_zonemember_type_e type;
    xpl_fzs_zonemember_identifier_u identifier;
};

// Makes the record, from the same forms but with domain and port in hexadecimal, as memberships are
// published: "1:A". False for an identifier of another form. Logs what it reads.
bool memberRecord(uint16 type, const String& id, Member_Record& record);

} // namespace cimple

#endif
