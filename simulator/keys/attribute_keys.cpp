// Puts the families of attribute keys together.
#include "simulator/keys/attribute_keys.h"

#include "platform/xpl_sml.h"

#include <algorithm>
#include <charconv>

namespace simulator
{
namespace
{

struct AllKeys
{
    AllKeys()
    {
        addSwitchKeys(reads);
        addSwitchConfigKeys(reads, writes);
        addHardwareKeys(reads);
        addPortKeys(reads);
        addPortConfigKeys(reads, writes);
        addStatisticsKeys(reads);
        addTopologyKeys(reads);
        addNameServerKeys(reads);
        addZoningKeys(reads, writes);
        addZoningCommands(writes);
        addLogKeys(reads, writes);
        addCimKeys(reads, writes);
    }

    ReadKeys reads;
    WriteKeys writes;
};

const AllKeys& allKeys()
{
    static const AllKeys keys;
    return keys;
}

} // namespace

const ReadKeys& readKeys()
{
    return allKeys().reads;
}

const WriteKeys& writeKeys()
{
    return allKeys().writes;
}

Answer::Answer(char* value) : _value(value)
{
    _value[0] = '\0';
}

std::int32_t Answer::text(std::string_view value)
{
    const std::size_t length = std::min(value.size(), kXplSmlTextSize - 1);
    std::copy_n(value.data(), length, _value);
    _value[length] = '\0';
    return XPL_OK;
}

std::int32_t Answer::present(std::string_view value)
{
    return value.empty() ? std::int32_t{XPL_NOT_AVAILABLE} : text(value);
}

std::int32_t Answer::decimal(std::uint64_t value)
{
    *std::to_chars(_value, _value + kXplSmlTextSize - 1, value).ptr = '\0';
    return XPL_OK;
}

std::int32_t Answer::hex(std::uint64_t value)
{
    *std::to_chars(_value, _value + kXplSmlTextSize - 1, value, 16).ptr = '\0';
    return XPL_OK;
}

std::int32_t Answer::flag(bool value)
{
    return text(value ? "True" : "False");
}

std::optional<bool> flagNamed(std::string_view text)
{
    if (text == "True")
        return true;
    return text == "False" ? std::optional<bool>(false) : std::nullopt;
}

} // namespace simulator
