// Construction and comparison of CIM values.
#include "agent/cim/CimValue.h"

#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace cimd
{

CimValue::CimValue(CimType type, bool isArray, Data data)
    : _data(std::move(data)), _type(type), _isArray(isArray)
{
}

CimValue CimValue::null(CimType type, bool isArray)
{
    return {type, isArray, std::monostate()};
}

CimValue CimValue::boolean(bool value)
{
    return {CimType::Boolean, false, value};
}

CimValue CimValue::char16(char16_t value)
{
    return {CimType::Char16, false, std::uint64_t{value}};
}

CimValue CimValue::unsignedInteger(CimType type, std::uint64_t value)
{
    if (!isUnsigned(type) || value > maxUnsigned(type))
        throw std::out_of_range(std::to_string(value) + " is no " + typeText(type, false));
    return {type, false, value};
}

CimValue CimValue::signedInteger(CimType type, std::int64_t value)
{
    if (!isSigned(type) || value > maxSigned(type) || value < minSigned(type))
        throw std::out_of_range(std::to_string(value) + " is no " + typeText(type, false));
    return {type, false, value};
}

CimValue CimValue::real32(float value)
{
    return {CimType::Real32, false, double{value}};
}

CimValue CimValue::real64(double value)
{
    return {CimType::Real64, false, value};
}

CimValue CimValue::string(std::string value)
{
    return {CimType::String, false, std::move(value)};
}

CimValue CimValue::dateTime(const CimDateTime& value)
{
    return {CimType::DateTime, false, value};
}

CimValue CimValue::reference(ObjectPath value)
{
    return {CimType::Reference, false, std::make_shared<const ObjectPath>(std::move(value))};
}

CimValue CimValue::embedded(CimType type, Instance value)
{
    return embedded(type, std::make_shared<const Instance>(std::move(value)));
}

CimValue CimValue::embedded(CimType type, std::shared_ptr<const Instance> value)
{
    if (!isEmbedded(type))
        throw std::invalid_argument("an embedded instance is no " + typeText(type, false));
    return {type, false, std::move(value)};
}

CimValue CimValue::array(CimType elementType, Elements elements)
{
    for (const CimValue& element : elements)
        if (!element.hasType(elementType, false))
            throw std::invalid_argument("a " + typeText(element.type(), element.isArray()) +
                                        " in an array of " + typeText(elementType, false));
    const auto isNull = [](const CimValue& element) { return element.isNull(); };
    if (elementType != CimType::Uint8 || std::any_of(elements.begin(), elements.end(), isNull))
        return {elementType, true, std::make_shared<const Elements>(std::move(elements))};
    Bytes all;
    all.reserve(elements.size());
    for (const CimValue& element : elements)
        all.push_back(static_cast<std::uint8_t>(element.asUnsigned()));
    return bytes(std::move(all));
}

CimValue CimValue::bytes(Bytes bytes)
{
    return {CimType::Uint8, true, std::make_shared<const Bytes>(std::move(bytes))};
}

bool operator==(const CimValue& left, const CimValue& right)
{
    if (left._type != right._type || left._isArray != right._isArray ||
        left._data.index() != right._data.index())
        return false;
    if (const auto* reference = std::get_if<CimValue::ReferencePtr>(&left._data))
        return **reference == right.asReference();
    if (const auto* instance = std::get_if<CimValue::InstancePtr>(&left._data))
        return **instance == right.asInstance();
    if (const auto* elements = std::get_if<CimValue::ElementsPtr>(&left._data))
        return **elements == right.elements();
    if (left.holdsBytes())
        return left.asBytes() == right.asBytes();
    return left._data == right._data;
}

std::string typeText(CimType type, bool isArray)
{
    std::string text;
    if (type == CimType::Instance)
        text = "embedded instance";
    else if (type == CimType::Object)
        text = "embedded object";
    else
        text = typeName(type);
    return isArray ? text + "[]" : text;
}

} // namespace cimd
