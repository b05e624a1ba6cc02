// The CIM data types and their names on the wire.
#ifndef AGENT_CIM_CIMTYPE_H
#define AGENT_CIM_CIMTYPE_H

#include <cstdint>
#include <optional>
#include <string_view>

namespace cimd
{

// Intrinsic data types of DSP0004, then references, then the two ways of carrying an instance by value. An
// embedded instance or object travels as a string on the wire (DSP0201 EmbeddedObject) but is never one in
// here.
enum class CimType : std::uint8_t
{
    Boolean,
    Char16,
    Uint8,
    Uint16,
    Uint32,
    Uint64,
    Sint8,
    Sint16,
    Sint32,
    Sint64,
    Real32,
    Real64,
    String,
    DateTime,
    Reference,
    Instance, // EmbeddedInstance("Class")
    Object    // EmbeddedObject
};

// DSP0201 spelling ("uint8", "datetime", "reference" ...); embedded instances and objects give "string".
std::string_view typeName(CimType type);

// The inverse for "boolean" to "reference"; nothing for another text. Names are matched exactly.
std::optional<CimType> typeFromName(std::string_view name);

bool isUnsigned(CimType type);
bool isSigned(CimType type);
bool isReal(CimType type);
inline bool isInteger(CimType type)
{
    return isUnsigned(type) || isSigned(type);
}
inline bool isEmbedded(CimType type)
{
    return type == CimType::Instance || type == CimType::Object;
}

// Limits of an integer type; the type must be unsigned, respectively signed.
std::uint64_t maxUnsigned(CimType type);
std::int64_t minSigned(CimType type);
std::int64_t maxSigned(CimType type);

} // namespace cimd

#endif
