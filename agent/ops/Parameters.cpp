// Checked access to parameters.
#include "agent/ops/Parameters.h"

namespace cimd
{

namespace
{

[[noreturn]] void fail(std::string_view parameter, const std::string& what)
{
    throw CimError(CimStatus::InvalidParameter, "parameter " + std::string(parameter) + " " + what);
}

} // namespace

Parameters::Parameters(const std::vector<XmlElement>& elements,
                       const ElementReader& reader,
                       std::size_t maxProperties)
    : _reader(reader), _maxProperties(maxProperties)
{
    for (const XmlElement element : elements)
    {
        const std::string_view name = requiredAttribute(element, "NAME");
        for (const Entry& entry : _entries)
            if (equalNoCase(entry.name, name))
                fail(name, "is given twice");
        const XmlElement value = firstChild(element);
        if (value && nextElement(value))
            fail(name, "has more than one value");
        _entries.push_back({name, value, false});
    }
}

XmlElement Parameters::find(const char* name)
{
    for (Entry& entry : _entries)
    {
        if (!equalNoCase(entry.name, name))
            continue;
        entry.known = true;
        return entry.value;
    }
    return {};
}

XmlElement Parameters::require(const char* name)
{
    const XmlElement element = find(name);
    if (!element)
        fail(name, "is required");
    return element;
}

void Parameters::finish() const
{
    for (const Entry& entry : _entries)
        if (!entry.known)
            fail(entry.name, "is not one of this operation");
}

bool Parameters::boolean(const char* name, bool byDefault)
{
    const XmlElement element = find(name);
    if (!element)
        return byDefault;
    const CimValue value = named(name, [&] { return _reader.value(CimType::Boolean, element); });
    if (value.isArray())
        fail(name, "must be one boolean");
    return value.asBoolean();
}

std::string Parameters::text(const char* name)
{
    const XmlElement element = find(name);
    if (!element)
        return {};
    const CimValue value = named(name, [&] { return _reader.value(CimType::String, element); });
    if (value.isArray())
        fail(name, "must be one string");
    return value.asString();
}

std::string Parameters::requiredText(const char* name)
{
    require(name);
    return text(name);
}

std::optional<std::uint32_t> Parameters::uint32(const char* name)
{
    const XmlElement element = find(name);
    if (!element)
        return std::nullopt;
    const CimValue value = named(name, [&] { return _reader.value(CimType::Uint32, element); });
    if (value.isArray())
        fail(name, "must be one number");
    return static_cast<std::uint32_t>(value.asUnsigned());
}

std::uint32_t Parameters::requiredUint32(const char* name)
{
    require(name);
    return *uint32(name);
}

CimName Parameters::className(const char* name)
{
    const XmlElement element = find(name);
    return element ? named(name, [&] { return _reader.className(element); }) : CimName();
}

CimName Parameters::requiredClassName(const char* name)
{
    require(name);
    return className(name);
}

ObjectPath Parameters::instanceName(const char* name)
{
    const XmlElement element = require(name);
    if (!isTag(element, "INSTANCENAME"))
        fail(name, "must be an INSTANCENAME");
    return named(name, [&] { return _reader.path(element); });
}

ObjectPath Parameters::objectName(const char* name)
{
    if (isTag(require(name), "CLASSNAME"))
        throw CimError(CimStatus::NotSupported,
                       "associations of classes are not supported, only of instances");
    return instanceName(name);
}

PropertyList Parameters::propertyList(const char* name)
{
    const XmlElement element = find(name);
    if (!element)
        return std::nullopt;
    const CimValue value = named(name, [&] { return _reader.value(CimType::String, element); });
    if (!value.isArray())
        fail(name, "must be an array of strings");
    if (value.elements().size() > _maxProperties)
        fail(name, "names more than " + std::to_string(_maxProperties) + " properties");
    std::vector<CimName> names;
    for (const CimValue& item : value.elements())
    {
        if (item.isNull())
            fail(name, "must not hold NULL");
        names.emplace_back(item.asString());
    }
    return names;
}

Instance Parameters::instance(const char* name)
{
    const XmlElement element = require(name);
    return named(name, [&] { return _reader.instance(element); });
}

Argument Parameters::value(const char* name)
{
    const XmlElement element = find(name);
    if (!element)
        return {name, CimValue::null(CimType::String), false};
    return named(name, [&] { return _reader.argument(element.parent()); });
}

Instance Parameters::namedInstance(const char* name)
{
    const XmlElement element = require(name);
    return named(name, [&] { return _reader.namedInstance(element); });
}

} // namespace cimd
