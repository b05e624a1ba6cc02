// Text, datetime and integer values out of CMPI data.
#include "from_cmpi_value.h"

namespace cimple_cmpi
{

using namespace cimple;

std::string typeName(CMPIType type)
{
    if (type & CMPI_ARRAY)
        return typeName(static_cast<CMPIType>(type & ~CMPI_ARRAY)) + " array";
    switch (type)
    {
    case CMPI_instance:
        return "embedded instance";
    case CMPI_ref:
        return "reference";
    case CMPI_chars:
        return "string";
    default:
        break;
    }
    for (uint16 code = BOOLEAN; code <= DATETIME; code++)
        if (withType(code, [](auto x) { return Scalar<decltype(x)>::kType; }) == type)
            return type_name[code];
    return "value of CMPI type " + std::to_string(type);
}

void refuseType(CMPIType type, CMPIType expected)
{
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                  typeName(type) + " given where " + typeName(expected) + " is expected");
}

String stringFrom(const CMPIData& data)
{
    const char* text = nullptr;
    if (data.type == CMPI_string)
        text = data.value.string ? data.value.string->ft->getCharPtr(data.value.string, nullptr) : nullptr;
    else if (data.type == CMPI_chars)
        text = data.value.chars;
    else
        refuseType(data.type, CMPI_string);
    return text ? String(text) : String();
}

Datetime datetimeFrom(const CMPIData& data)
{
    if (data.type != CMPI_dateTime && data.type != CMPI_string)
        refuseType(data.type, CMPI_dateTime);
    CMPIData text = data;
    if (data.type == CMPI_dateTime)
    {
        text.type = CMPI_string;
        text.value.string = data.value.dateTime->ft->getStringFormat(data.value.dateTime, nullptr);
    }
    Datetime result;
    const String chars = stringFrom(text);
    if (!result.set(chars.c_str()))
        throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                      std::string("\"") + chars.c_str() + "\" is no datetime without wildcards");
    return result;
}

namespace
{

template <class T>
bool split(T value, uint64& magnitude, bool& negative)
{
    negative = value < 0;
    magnitude = static_cast<uint64>(value);
    if (negative)
        magnitude = 0 - magnitude;
    return true;
}

} // namespace

bool integerFrom(const CMPIData& data, uint64& magnitude, bool& negative)
{
    switch (data.type)
    {
    case CMPI_uint8:
        return split(data.value.uint8, magnitude, negative);
    case CMPI_uint16:
        return split(data.value.uint16, magnitude, negative);
    case CMPI_uint32:
        return split(data.value.uint32, magnitude, negative);
    case CMPI_uint64:
        return split(data.value.uint64, magnitude, negative);
    case CMPI_sint8:
        return split(data.value.sint8, magnitude, negative);
    case CMPI_sint16:
        return split(data.value.sint16, magnitude, negative);
    case CMPI_sint32:
        return split(data.value.sint32, magnitude, negative);
    case CMPI_sint64:
        return split(data.value.sint64, magnitude, negative);
    default:
        return false;
    }
}

} // namespace cimple_cmpi
