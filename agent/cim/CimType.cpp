// Names and limits of the CIM data types.
#include "agent/cim/CimType.h"

#include <array>
#include <limits>

namespace cimd
{
namespace
{

struct TypeName
{
    CimType type;
    std::string_view name;
};

constexpr std::array kTypeNames{
    TypeName{CimType::Boolean, "boolean"},
    TypeName{CimType::Char16, "char16"},
    TypeName{CimType::Uint8, "uint8"},
    TypeName{CimType::Uint16, "uint16"},
    TypeName{CimType::Uint32, "uint32"},
    TypeName{CimType::Uint64, "uint64"},
    TypeName{CimType::Sint8, "sint8"},
    TypeName{CimType::Sint16, "sint16"},
    TypeName{CimType::Sint32, "sint32"},
    TypeName{CimType::Sint64, "sint64"},
    TypeName{CimType::Real32, "real32"},
    TypeName{CimType::Real64, "real64"},
    TypeName{CimType::String, "string"},
    TypeName{CimType::DateTime, "datetime"},
    TypeName{CimType::Reference, "reference"},
};

} // namespace

std::string_view typeName(CimType type)
{
    if (isEmbedded(type))
        return "string";
    return kTypeNames[static_cast<std::size_t>(type)].name;
}

std::optional<CimType> typeFromName(std::string_view name)
{
    for (const TypeName& entry : kTypeNames)
        if (entry.name == name)
            return entry.type;
    return std::nullopt;
}

bool isUnsigned(CimType type)
{
    return type >= CimType::Uint8 && type <= CimType::Uint64;
}

bool isSigned(CimType type)
{
    return type >= CimType::Sint8 && type <= CimType::Sint64;
}

bool isReal(CimType type)
{
    return type == CimType::Real32 || type == CimType::Real64;
}

std::uint64_t maxUnsigned(CimType type)
{
    switch (type)
    {
    case CimType::Uint8:
        return std::numeric_limits<std::uint8_t>::max();
    case CimType::Uint16:
        return std::numeric_limits<std::uint16_t>::max();
    case CimType::Uint32:
        return std::numeric_limits<std::uint32_t>::max();
    default:
        return std::numeric_limits<std::uint64_t>::max();
    }
}

std::int64_t maxSigned(CimType type)
{
    switch (type)
    {
    case CimType::Sint8:
        return std::numeric_limits<std::int8_t>::max();
    case CimType::Sint16:
        return std::numeric_limits<std::int16_t>::max();
    case CimType::Sint32:
        return std::numeric_limits<std::int32_t>::max();
    default:
        return std::numeric_limits<std::int64_t>::max();
    }
}

std::int64_t minSigned(CimType type)
{
    return -maxSigned(type) - 1;
}

} // namespace cimd
