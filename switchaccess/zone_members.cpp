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

bool isHexadecimal(const std::string& text)
{
    return !text.empty() && IS_HEX_STR(text.c_str()) == 1;
}
bool isDecimal(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// What stands before and behind the first colon; false without one.
bool split(const std::string& text, std::string& domain, std::string& port)
{
    const std::size_t colon = text.find(':');
    if (colon == text.npos)
        return false;
    domain = text.substr(0, colon);
    port = text.substr(colon + 1);
    return true;
}

// One byte of an identifier, from its hexadecimal digits.
bool parseByte(const std::string& digits, std::uint8_t& byte)
{
    const unsigned long value =
        isHexadecimal(digits) ? std::strtoul(digits.c_str(), nullptr, kHexadecimal) : 256;
    byte = static_cast<std::uint8_t>(value);
    return value < 256;
}

} // namespace

std::string memberOfCommand(uint16 type, const String& id)
{
    const std::string text = id.c_str();
    const bool isWhole = (type == kMemberIsWwn && text.size() == kWwnDigits) ||
                         (type == kMemberIsAddress && text.size() == kAddressDigits);
    if (isWhole)
        return isHexadecimal(text) ? text : std::string();
    std::string domain;
    std::string port;
    if (type != kMemberIsSwitchPort || !split(text, domain, port) || !isDecimal(domain) || !isDecimal(port))
        return {};
    // Numbers that do not fit two digits get more, and the switch refuses them.
    char digits[2 * 2 * sizeof(unsigned long) + 1];
    std::snprintf(digits,
                  sizeof(digits),
                  "%02lx%02lx",
                  std::strtoul(domain.c_str(), nullptr, 10),
                  std::strtoul(port.c_str(), nullptr, 10));
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
            parseByte(pair, record.identifier.nodePortName[i]);
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
            parseByte(text.substr(2 * i, 2), record.identifier.nodePortId[i]);
        return true;
    default:
        std::string domain;
        std::string port;
        if (!split(text, domain, port) || !parseByte(domain, record.identifier.domainPort.domain) ||
            !parseByte(port, record.identifier.domainPort.port))
            return false;
        record.type = XPL_ZMT_DOMAINPORT;
        cim_log(kLogInfo, "DomainId = %x\n", unsigned{record.identifier.domainPort.domain});
        cim_log(kLogInfo, "PortNo = %x\n", unsigned{record.identifier.domainPort.port});
        return true;
    }
}

} // namespace cimple
