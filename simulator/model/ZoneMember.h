// A member of a zone or alias, and its texts.
#ifndef SIMULATOR_MODEL_ZONEMEMBER_H
#define SIMULATOR_MODEL_ZONEMEMBER_H

#include "platform/xpl_fzs.h"

#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace simulator
{

struct ZoneMember
{
    xpl_fzs_zonemember_type_e type = XPL_ZMT_NODEPORTNAME;
    std::uint64_t number = 0; // the WWN or address, or the domain's byte and the port's
    std::string alias;        // its name, when it stands for the members of one

    friend bool operator==(const ZoneMember& a, const ZoneMember& b)
    {
        return std::tie(a.type, a.number, a.alias) == std::tie(b.type, b.number, b.alias);
    }
    friend bool operator<(const ZoneMember& a, const ZoneMember& b)
    {
        return std::tie(a.type, a.number, a.alias) < std::tie(b.type, b.number, b.alias);
    }
};

ZoneMember wwnMember(std::uint64_t wwn);
ZoneMember addressMember(std::uint32_t address);
ZoneMember portMember(int domain, int port);
ZoneMember aliasMember(std::string_view name);

// False for a domain or address that no fabric has.
bool isPossible(const ZoneMember& member);

// "2100026E1A40B7C1", "010203", "1:A" or the alias's name.
std::string memberText(const ZoneMember& member);
// What such a text in either letter case means, or domain and port as "010a"; nothing for others, an alias's
// name among them.
std::optional<ZoneMember> memberOfText(std::string_view text);

// The member in the form of the zoning library, and back. Nothing for a type that the library does not know
// and for an alias's name without an end.
xpl_fzs_zonemember_identifier_u identifierOf(const ZoneMember& member);
std::optional<ZoneMember> memberOf(std::int32_t type, const xpl_fzs_zonemember_identifier_u& identifier);

} // namespace simulator

#endif
