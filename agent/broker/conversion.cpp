// Reading and building CMPIData.
#include "agent/broker/conversion.h"

#include "agent/broker/InstanceObject.h"
#include "agent/cim/coercion.h"

#include <cstring>

namespace cimd
{
namespace
{

template <class Scalar>
Scalar read(const CMPIValue* value)
{
    Scalar result;
    std::memcpy(&result, value, sizeof(result));
    return result;
}

CimValue stringOrNull(const char* text)
{
    return text ? CimValue::string(text) : CimValue::null(CimType::String);
}

CimValue fromArray(const CMPIArray* array, CimType elementType)
{
    if (!array)
        return CimValue::null(elementType, true);
    const CimArray& elements = objectOf<ArrayObject>(array).elements;
    if (elements.type() != elementType)
        throw CmpiError(CMPI_RC_ERR_INVALID_DATA_TYPE,
                        "an array of " + typeText(elements.type(), false) + " is passed as one of " +
                            typeText(elementType, false));
    return elements.value();
}

CimValue fromObject(const CMPIValue* value, CMPIType type)
{
    switch (type)
    {
    case CMPI_string:
    {
        const auto* text = read<const CMPIString*>(value);
        return text ? CimValue::string(objectOf<StringObject>(text).text) : CimValue::null(CimType::String);
    }
    case CMPI_dateTime:
    {
        const auto* time = read<const CMPIDateTime*>(value);
        return time ? CimValue::dateTime(objectOf<DateTimeObject>(time).value)
                    : CimValue::null(CimType::DateTime);
    }
    case CMPI_ref:
    {
        const auto* path = read<const CMPIObjectPath*>(value);
        return path ? CimValue::reference(objectOf<ObjectPathObject>(path).path())
                    : CimValue::null(CimType::Reference);
    }
    default: // CMPI_instance
    {
        const auto* instance = read<const CMPIInstance*>(value);
        if (!instance)
            return CimValue::null(CimType::Instance);
        return CimValue::embedded(CimType::Instance, objectOf<InstanceObject>(instance).given());
    }
    }
}

CMPIValue valueOf(const CimValue& value)
{
    CMPIValue result;
    std::memset(&result, 0, sizeof(result));
    if (value.isArray())
    {
        result.array = track<ArrayObject>(CimArray(value));
        return result;
    }
    switch (value.type())
    {
    case CimType::Boolean:
        result.boolean = value.asBoolean() ? 1 : 0;
        break;
    case CimType::Char16:
        result.char16 = value.asChar16();
        break;
    case CimType::Uint8:
        result.uint8 = static_cast<CMPIUint8>(value.asUnsigned());
        break;
    case CimType::Uint16:
        result.uint16 = static_cast<CMPIUint16>(value.asUnsigned());
        break;
    case CimType::Uint32:
        result.uint32 = static_cast<CMPIUint32>(value.asUnsigned());
        break;
    case CimType::Uint64:
        result.uint64 = value.asUnsigned();
        break;
    case CimType::Sint8:
        result.sint8 = static_cast<CMPISint8>(value.asSigned());
        break;
    case CimType::Sint16:
        result.sint16 = static_cast<CMPISint16>(value.asSigned());
        break;
    case CimType::Sint32:
        result.sint32 = static_cast<CMPISint32>(value.asSigned());
        break;
    case CimType::Sint64:
        result.sint64 = value.asSigned();
        break;
    case CimType::Real32:
        result.real32 = static_cast<CMPIReal32>(value.asReal());
        break;
    case CimType::Real64:
        result.real64 = value.asReal();
        break;
    case CimType::String:
        result.string = trackString(value.asString());
        break;
    case CimType::DateTime:
        result.dateTime = track<DateTimeObject>(value.asDateTime());
        break;
    case CimType::Reference:
        result.ref = track<ObjectPathObject>(value.asReference());
        break;
    case CimType::Instance:
    case CimType::Object:
        result.inst = track<InstanceObject>(currentScope().repository(), value.asInstance());
        break;
    }
    return result;
}

} // namespace

CMPIType cmpiType(CimType type, bool isArray)
{
    constexpr CMPIType kCodes[] = {CMPI_boolean,
                                   CMPI_char16,
                                   CMPI_uint8,
                                   CMPI_uint16,
                                   CMPI_uint32,
                                   CMPI_uint64,
                                   CMPI_sint8,
                                   CMPI_sint16,
                                   CMPI_sint32,
                                   CMPI_sint64,
                                   CMPI_real32,
                                   CMPI_real64,
                                   CMPI_string,
                                   CMPI_dateTime,
                                   CMPI_ref,
                                   CMPI_instance,
                                   CMPI_instance};
    const CMPIType code = kCodes[static_cast<std::size_t>(type)];
    return static_cast<CMPIType>(isArray ? code | CMPI_ARRAY : code);
}

CimType cimType(CMPIType type)
{
    switch (type)
    {
    case CMPI_boolean:
        return CimType::Boolean;
    case CMPI_char16:
        return CimType::Char16;
    case CMPI_uint8:
        return CimType::Uint8;
    case CMPI_uint16:
        return CimType::Uint16;
    case CMPI_uint32:
        return CimType::Uint32;
    case CMPI_uint64:
        return CimType::Uint64;
    case CMPI_sint8:
        return CimType::Sint8;
    case CMPI_sint16:
        return CimType::Sint16;
    case CMPI_sint32:
        return CimType::Sint32;
    case CMPI_sint64:
        return CimType::Sint64;
    case CMPI_real32:
        return CimType::Real32;
    case CMPI_real64:
        return CimType::Real64;
    case CMPI_string:
    case CMPI_chars:
    case CMPI_charsptr:
        return CimType::String;
    case CMPI_dateTime:
        return CimType::DateTime;
    case CMPI_ref:
        return CimType::Reference;
    case CMPI_instance:
        return CimType::Instance;
    default:
        throw CmpiError(CMPI_RC_ERR_INVALID_DATA_TYPE,
                        "CMPI type " + std::to_string(type) + " carries no CIM value");
    }
}

CimValue fromCmpi(const CMPIValue* value, CMPIType type)
{
    if (type == CMPI_null)
        return {};
    if ((type & CMPI_ARRAY) != 0)
    {
        const CimType elementType = cimType(static_cast<CMPIType>(type & ~CMPI_ARRAY));
        return value ? fromArray(read<const CMPIArray*>(value), elementType)
                     : CimValue::null(elementType, true);
    }
    const CimType known = cimType(type);
    if (!value)
        return CimValue::null(known);
    switch (type)
    {
    case CMPI_boolean:
        return CimValue::boolean(read<CMPIBoolean>(value) != 0);
    case CMPI_char16:
        return CimValue::char16(static_cast<char16_t>(read<CMPIChar16>(value)));
    case CMPI_uint8:
        return CimValue::uint8(read<CMPIUint8>(value));
    case CMPI_uint16:
        return CimValue::uint16(read<CMPIUint16>(value));
    case CMPI_uint32:
        return CimValue::uint32(read<CMPIUint32>(value));
    case CMPI_uint64:
        return CimValue::uint64(read<CMPIUint64>(value));
    case CMPI_sint8:
        return CimValue::sint8(read<CMPISint8>(value));
    case CMPI_sint16:
        return CimValue::sint16(read<CMPISint16>(value));
    case CMPI_sint32:
        return CimValue::sint32(read<CMPISint32>(value));
    case CMPI_sint64:
        return CimValue::sint64(read<CMPISint64>(value));
    case CMPI_real32:
        return CimValue::real32(read<CMPIReal32>(value));
    case CMPI_real64:
        return CimValue::real64(read<CMPIReal64>(value));
    case CMPI_chars:
        return stringOrNull(static_cast<const char*>(static_cast<const void*>(value)));
    case CMPI_charsptr:
        return stringOrNull(read<const char*>(value));
    default:
        return fromObject(value, type);
    }
}

CMPIData toCmpi(const CimValue& value, CMPIValueState state)
{
    CMPIData result;
    std::memset(&result, 0, sizeof(result));
    result.type = cmpiType(value.type(), value.isArray());
    result.state = state;
    if (value.isNull())
        result.state = static_cast<CMPIValueState>(state | CMPI_nullValue);
    else
        result.value = valueOf(value);
    return result;
}

CMPIData notFound(CMPIStatus* rc)
{
    if (rc)
        *rc = {CMPI_RC_ERR_NO_SUCH_PROPERTY, nullptr};
    CMPIData result;
    std::memset(&result, 0, sizeof(result));
    result.state = CMPI_notFound | CMPI_nullValue;
    return result;
}

} // namespace cimd
