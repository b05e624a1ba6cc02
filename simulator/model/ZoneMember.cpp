// Members of zones and aliases.
#include "simulator/model/ZoneMember.h"

#include "simulator/model/hex.h"
#include "simulator/scenario/record_rules.h"

#include <algorithm>
#include <cstring>

namespace simulator
{
namespace
{

constexpr std::size_t kWwnDigits = 16;
constexpr std::size_t kAddressDigits = 6;
constexpr std::size_t kDomainPortDigits = 4; // of the form without a colon

ZoneMember numbered(xpl_fzs_zonemember_type_e type, std::uint64_t number)
{
    ZoneMember member;
    member.type = type;
    member.number = number;
    return member;
}

// The most significant byte first.
template <std::size_t N>
void putBytes(std::uint8_t (&bytes)[N], std::uint64_t number)
{
    for (std::size_t i = 0; i < N; ++i)
        bytes[i] = static_cast<std::uint8_t>(number >> 8 * (N - 1 - i));
}

template <std::size_t N>
std::uint64_t numberOf(const std::uint8_t (&bytes)[N])
{
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes)
        number = number << 8 | byte;
    return number;
}

// Two bytes in hexadecimal around a colon.
std::optional<ZoneMember> portOfText(std::string_view text, std::size_t colon)
{
    std::uint64_t domain = 0;
    std::uint64_t port = 0;
    const bool parsed = parseHex(text.substr(0, colon), domain) && parseHex(text.substr(colon + 1), port);
    if (!parsed || domain > 0xFF || port > 0xFF)
        return std::nullopt;
    return portMember(static_cast<int>(domain), static_cast<int>(port));
}

} // namespace

ZoneMember wwnMember(std::uint64_t wwn)
{
    return numbered(XPL_ZMT_NODEPORTNAME, wwn);
}

ZoneMember addressMember(std::uint32_t address)
{
    return numbered(XPL_ZMT_NODEPORTID, address);
}

ZoneMember portMember(int domain, int port)
{
    return numbered(XPL_ZMT_DOMAINPORT,
                    static_cast<std::uint64_t>(domain) << 8 | static_cast<unsigned>(port));
}

ZoneMember aliasMember(std::string_view name)
{
    ZoneMember member;
    member.type = XPL_ZMT_ALIAS;
    member.alias = name;
    return member;
}

bool isPossible(const ZoneMember& member)
{
    if (member.type == XPL_ZMT_DOMAINPORT)
        return isDomainId(static_cast<int>(member.number >> 8));
    return member.type != XPL_ZMT_NODEPORTID || member.number != 0;
}

std::string memberText(const ZoneMember& member)
{
    switch (member.type)
    {
    case XPL_ZMT_NODEPORTNAME:
        return upperCase(hexOf(member.number, kWwnDigits));
    case XPL_ZMT_DOMAINPORT:
        return upperCase(hexOf(member.number >> 8) + ":" + hexOf(member.number & 0xFF));
    case XPL_ZMT_NODEPORTID:
        return upperCase(hexOf(member.number, kAddressDigits));
    case XPL_ZMT_ALIAS:
        return member.alias;
    }
    return {};
}

std::optional<ZoneMember> memberOfText(std::string_view text)
{
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos)
        return portOfText(text, colon);
    std::uint64_t number = 0;
    if (!parseHex(text, number))
        return std::nullopt;
    if (text.size() == kWwnDigits)
        return wwnMember(number);
    if (text.size() == kAddressDigits)
        return addressMember(static_cast<std::uint32_t>(number));
    if (text.size() == kDomainPortDigits)
        return numbered(XPL_ZMT_DOMAINPORT, number);
    return std::nullopt;
}

xpl_fzs_zonemember_identifier_u identifierOf(const ZoneMember& member)
{
    xpl_fzs_zonemember_identifier_u identifier{};
    std::memset(&identifier, 0, sizeof identifier);
    switch (member.type)
    {
    case XPL_ZMT_NODEPORTNAME:
        putBytes(identifier.nodePortName, member.number);
        break;
    case XPL_ZMT_DOMAINPORT:
        identifier.domainPort.domain = static_cast<std::uint8_t>(member.number >> 8);
        identifier.domainPort.port = static_cast<std::uint8_t>(member.number);
        break;
    case XPL_ZMT_NODEPORTID:
        putBytes(identifier.nodePortId, member.number);
        break;
    case XPL_ZMT_ALIAS:
        std::copy_n(member.alias.data(), std::min(member.alias.size(), kZoneNameSize - 1), identifier.alias);
        break;
    }
    return identifier;
}

std::optional<ZoneMember> memberOf(std::int32_t type, const xpl_fzs_zonemember_identifier_u& identifier)
{
    switch (type)
    {
    case XPL_ZMT_NODEPORTNAME:
        return wwnMember(numberOf(identifier.nodePortName));
    case XPL_ZMT_DOMAINPORT:
        return portMember(identifier.domainPort.domain, identifier.domainPort.port);
    case XPL_ZMT_NODEPORTID:
        return addressMember(static_cast<std::uint32_t>(numberOf(identifier.nodePortId)));
    case XPL_ZMT_ALIAS:
        if (std::memchr(identifier.alias, '\0', sizeof identifier.alias) != nullptr)
            return aliasMember(identifier.alias);
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace simulator
