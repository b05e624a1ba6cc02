// The forms in which clients name zone members, and what the switch makes of them.
#include "switchaccess/zone_members.h"

#include "support/cim_log.h"
#include "switchaccess/string_helpers.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace cimple
{

namespace
{

constexpr std::size_t kWwnDigits = 16;
constexpr std::size_t kAddressDigits = 6;
constexpr int kHexadecimal = 16;
constexpr int kDecimal = 10;

bool isHexadecimal(const std::string& text)
{
    return !text.empty() && IS_HEX_STR(text.c_str()) == 1;
}
bool isDecimal(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// One byte of an identifier, from its digits.
bool parseByte(const std::string& digits, int base, std::uint8_t& byte)
{
    const bool isNumber = base == kHexadecimal ? isHexadecimal(digits) : isDecimal(digits);
    const unsigned long value = isNumber ? std::strtoul(digits.c_str(), nullptr, base) : 256;
    byte = static_cast<std::uint8_t>(value);
    return value < 256;
}

// Domain and port of a member.
bool parseSwitchPort(const std::string& text, int base, std::uint8_t& domain, std::uint8_t& port)
{
    const std::size_t colon = text.find(':');
    return colon != text.npos && parseByte(text.substr(0, colon), base, domain) &&
           parseByte(text.substr(colon + 1), base, port);
}

} // namespace

std::string memberOfCommand(uint16 type, const String& id)
{
    const std::string text = id.c_str();
    const bool isWhole = (type == kMemberIsWwn && text.size() == kWwnDigits) ||
                         (type == kMemberIsAddress && text.size() == kAddressDigits);
    if (isWhole)
        return isHexadecimal(text) ? text : std::string();
    // Each must fit two digits: with more, the switch would take the whole for a member of another type.
    std::uint8_t domain = 0;
    std::uint8_t port = 0;
    if (type != kMemberIsSwitchPort || !parseSwitchPort(text, kDecimal, domain, port))
        return {};
    char digits[2 * 2 + 1];
    std::snprintf(digits, sizeof(digits), "%02x%02x", unsigned{domain}, unsigned{port});
    return digits;
}

bool memberRecord(uint16 type, const String& id, Member_Record& record)
{
    const std::string text = id.c_str();
    record = {};
    switch (type)
    {
    case kMemberIsWwn:
        if (text.size() != kWwnDigits || !isHexadecimal(text))
            return false;
        record.type = XPL_ZMT_NODEPORTNAME;
        for (std::size_t i = 0; i < sizeof(record.identifier.nodePortName); ++i)
        {
            const std::string pair = text.substr(2 * i, 2);
            parseByte(pair, kHexadecimal, record.identifier.nodePortName[i]);
            cim_log(kLogInfo,
                    "s=%s NodePortName[%d] = %d\n",
                    pair.c_str(),
                    static_cast<int>(i),
                    int{record.identifier.nodePortName[i]});
        }
        return true;
    case kMemberIsAddress:
        if (text.size() != kAddressDigits || !isHexadecimal(text))
            return false;
        cim_log(kLogInfo, "Type is XPL_ZMT_NODEPORTID\n");
        record.type = XPL_ZMT_NODEPORTID;
        for (std::size_t i = 0; i < sizeof(record.identifier.nodePortId); ++i)
            parseByte(text.substr(2 * i, 2), kHexadecimal, record.identifier.nodePortId[i]);
        return true;
    default:
        if (!parseSwitchPort(
                text, kHexadecimal, record.identifier.domainPort.domain, record.identifier.domainPort.port))
            return false;
        record.type = XPL_ZMT_DOMAINPORT;
        cim_log(kLogInfo, "DomainId = %x\n", unsigned{record.identifier.domainPort.domain});
        cim_log(kLogInfo, "PortNo = %x\n", unsigned{record.identifier.domainPort.port});
        return true;
    }
}

} // namespace cimple
