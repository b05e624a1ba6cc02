// The lists of ports to which a switch in transparent mode forwards a port.
#include "switchaccess/tf_port_list.h"

#include "support/cim_log.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace cimple
{

namespace
{

constexpr const char* kNone = "None";

// The same on every machine, however long its long.
int numberOf(const std::string& token)
{
    constexpr long kLow = std::numeric_limits<int>::min();
    constexpr long kHigh = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::strtol(token.c_str(), nullptr, 10), kLow, kHigh));
}

} // namespace

bool isNoTFPort(const char* text)
{
    return *text == '\0' || std::strcmp(text, kNone) == 0;
}

std::vector<int> getTFPortList(const char* text)
{
    std::vector<int> ports;
    for (const char* rest = text; *rest != '\0'; rest += *rest == ',' ? 1 : 0)
    {
        const std::size_t length = std::strcspn(rest, ",");
        if (length > 0)
        {
            const int port = numberOf(std::string(rest, length));
            cim_log(kLogInfo, "TFPortList[%d] = %d\n", static_cast<int>(ports.size()), port);
            ports.push_back(port);
        }
        rest += length;
    }
    return ports;
}

std::string deleteFromTFPortList(const std::vector<int>& ports, int port)
{
    std::string text;
    for (const int one : ports)
        if (one != port)
            text += (text.empty() ? "" : ",") + std::to_string(one);
    return text.empty() ? kNone : text;
}

} // namespace cimple
