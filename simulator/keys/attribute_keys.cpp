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
        addPortKeys(reads);
        addPortConfigKeys(reads, writes);
        addStatisticsKeys(reads);
        addTopologyKeys(reads);
        addNameServerKeys(reads);
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

} // namespace simulator
