// From elements to values.
#include "agent/xml/ElementReader.h"

#include "agent/cim/CimArray.h"
#include "agent/cim/value_text.h"
#include "agent/xml/ByteArrayPacker.h"

#include <algorithm>

namespace cimd
{

namespace
{

// The element's one child element.
XmlElement onlyChild(XmlElement element)
{
    const XmlElement child = firstChild(element);
    if (!child)
        failElement(element, "is empty");
    if (const XmlElement second = nextElement(child))
        failElement(element, "has an unexpected element " + std::string(second.name()));
    return child;
}

// Character data of an element that must not hold elements.
std::string plainText(XmlElement element)
{
    if (const XmlElement child = firstChild(element))
        failElement(element, "has an unexpected element " + std::string(child.name()));
    return textOf(element);
}

std::string noValue(CimType type, std::string_view text)
{
    return quoted(text) + " is not a " + std::string(typeName(type));
}

CimValue parseText(CimType type, XmlElement element)
{
    const std::string text = plainText(element);
    std::optional<CimValue> value = parseScalar(type, text);
    if (!value)
        failElement(element, noValue(type, text));
    return std::move(*value);
}

CimType typeAttribute(XmlElement element, const char* attribute)
{
    const std::string_view text = requiredAttribute(element, attribute);
    const std::optional<CimType> type = typeFromName(text);
    if (!type)
        failElement(element, "has the unknown type \"" + std::string(text) + '"');
    return *type;
}

// Type of a string element that may carry an embedded object; the attribute also occurs in capitals.
CimType withEmbedding(XmlElement element, CimType type)
{
    for (const char* name : {"EmbeddedObject", "EMBEDDEDOBJECT"})
    {
        const std::optional<std::string_view> kind = element.attribute(name);
        if (!kind)
            continue;
        if (type != CimType::String || (*kind != "instance" && *kind != "object"))
            failElement(element, "has an EmbeddedObject attribute that does not fit");
        return *kind == "instance" ? CimType::Instance : CimType::Object;
    }
    return type;
}

} // namespace

void failElement(XmlElement element, const std::string& what)
{
    std::string text(element.name());
    if (const std::string_view name = element.attribute("NAME").value_or(""); !name.empty())
        text.append(1, ' ').append(name);
    throw CimError(CimStatus::InvalidParameter, text + " " + what);
}

std::string_view requiredAttribute(XmlElement element, const char* name)
{
    const std::string_view value = element.attribute(name).value_or("");
    if (value.empty())
        failElement(element, std::string("lacks the attribute ") + name);
    return value;
}

std::string ElementReader::nameSpace(XmlElement element) const
{
    std::string path;
    for (XmlElement child = firstChild(element); child; child = nextElement(child))
    {
        if (!isTag(child, "NAMESPACE"))
            failElement(element, "has an unexpected element " + std::string(child.name()));
        path += path.empty() ? "" : "/";
        path += requiredAttribute(child, "NAME");
    }
    if (path.empty())
        failElement(element, "is empty");
    return path;
}

CimName ElementReader::className(XmlElement element) const
{
    if (!isTag(element, "CLASSNAME"))
        failElement(element, "stands where CLASSNAME is expected");
    return requiredAttribute(element, "NAME");
}

void ElementReader::nameSpacePath(XmlElement element, ObjectPath& into) const
{
    if (isTag(element, "LOCALNAMESPACEPATH"))
        return into.setNameSpace(nameSpace(element));
    const XmlElement host = firstChild(element);
    const XmlElement local = nextElement(host);
    if (!isTag(element, "NAMESPACEPATH") || !isTag(host, "HOST") || !isTag(local, "LOCALNAMESPACEPATH"))
        failElement(element, "is not a namespace path");
    into.setHost(plainText(host));
    into.setNameSpace(nameSpace(local));
}

ObjectPath ElementReader::path(XmlElement element) const
{
    if (isTag(element, "VALUE.REFERENCE") || isTag(element, "OBJECTPATH"))
        return path(onlyChild(element));
    if (isTag(element, "INSTANCENAME"))
        return instanceName(element);
    if (isTag(element, "CLASSNAME"))
        return ObjectPath(std::string(), className(element));

    const bool ofInstance = isTag(element, "INSTANCEPATH") || isTag(element, "LOCALINSTANCEPATH");
    if (!ofInstance && !isTag(element, "CLASSPATH") && !isTag(element, "LOCALCLASSPATH"))
        failElement(element, "stands where an object path is expected");
    const XmlElement where = firstChild(element);
    const XmlElement what = nextElement(where);
    if (!isTag(what, ofInstance ? "INSTANCENAME" : "CLASSNAME") || nextElement(what))
        failElement(element, "must hold a namespace path and a name");
    ObjectPath result = path(what);
    nameSpacePath(where, result);
    return result;
}

ObjectPath ElementReader::instanceName(XmlElement element) const
{
    ObjectPath result(std::string(), requiredAttribute(element, "CLASSNAME"));
    for (XmlElement child = firstChild(element); child; child = nextElement(child))
    {
        const bool named = isTag(child, "KEYBINDING");
        const CimName name = named ? CimName(requiredAttribute(child, "NAME")) : CimName();
        const XmlElement key = named ? onlyChild(child) : child;
        CimValue value = isTag(key, "VALUE.REFERENCE") ? CimValue::reference(path(key)) : keyValue(key);
        if (!result.setKey(name, std::move(value)))
            failElement(element, "has the key " + name.str() + " twice");
        if (result.keys().size() > _limits.pathKeys)
            failElement(element, "has more than " + std::to_string(_limits.pathKeys) + " keys");
    }
    if (result.keys().size() > 1 && result.findKey(CimName()) != nullptr)
        failElement(element, "has a key without a name beside others");
    return result;
}

CimValue ElementReader::keyValue(XmlElement element) const
{
    if (!isTag(element, "KEYVALUE"))
        failElement(element, "stands where KEYVALUE is expected");
    if (element.attribute("TYPE"))
    {
        const CimType type = typeAttribute(element, "TYPE");
        if (type == CimType::Reference)
            failElement(element, "cannot hold a reference");
        return parseText(type, element);
    }
    const std::string_view kind = element.attribute("VALUETYPE").value_or("string");
    if (kind == "string")
        return CimValue::string(plainText(element));
    if (kind == "boolean")
        return parseText(CimType::Boolean, element);
    if (kind != "numeric")
        failElement(element, "has the unknown VALUETYPE \"" + std::string(kind) + '"');
    const std::string text = plainText(element);
    for (const CimType type : {CimType::Uint64, CimType::Sint64, CimType::Real64})
        if (std::optional<CimValue> value = parseScalar(type, text))
            return std::move(*value);
    failElement(element, quoted(text) + " is not a number");
}

CimValue ElementReader::embedded(CimType type, const std::string& text) const
{
    if (_limits.embeddedDepth == 0)
        throw CimError(CimStatus::InvalidParameter, "embedded objects are nested too deep");
    try
    {
        const XmlDocument document(packByteArrays(text), _limits);
        Limits inner = _limits;
        --inner.embeddedDepth;
        return CimValue::embedded(type, ElementReader(inner).instance(document.root()));
    }
    catch (const XmlError& error)
    {
        throw CimError(CimStatus::InvalidParameter, std::string("embedded object: ") + error.what());
    }
}

CimValue ElementReader::scalar(CimType type, XmlElement element) const
{
    if (type == CimType::Reference)
    {
        if (!isTag(element, "VALUE.REFERENCE"))
            failElement(element, "stands where VALUE.REFERENCE is expected");
        return CimValue::reference(path(element));
    }
    if (!isTag(element, "VALUE"))
        failElement(element, "stands where VALUE is expected");
    if (!isEmbedded(type))
        return parseText(type, element);
    return embedded(type, plainText(element));
}

CimValue ElementReader::value(CimType type, XmlElement element) const
{
    const char* const arrayTag = type == CimType::Reference ? "VALUE.REFARRAY" : "VALUE.ARRAY";
    if (!isTag(element, arrayTag))
        return scalar(type, element);
    CimArray elements(type);
    const std::size_t most = type == CimType::Uint8 ? _limits.byteArrayElements : _limits.arrayElements;
    const auto checkRoom = [&]
    {
        if (elements.size() == most)
            failElement(element, "has more than " + std::to_string(most) + " elements");
    };
    PackedBytes packed(type == CimType::Uint8 ? element.content() : "");
    for (unsigned char byte = 0; packed.next(byte);)
    {
        checkRoom();
        elements.add(CimValue::uint8(byte));
    }
    for (XmlElement child = firstChild(element); child; child = nextElement(child))
    {
        checkRoom();
        elements.add(isTag(child, "VALUE.NULL") ? CimValue::null(type) : scalar(type, child));
    }
    return std::move(elements).value();
}

void ElementReader::property(XmlElement element, Instance& into) const
{
    const bool isReference = isTag(element, "PROPERTY.REFERENCE");
    const bool isArray = isTag(element, "PROPERTY.ARRAY");
    if (!isReference && !isArray && !isTag(element, "PROPERTY"))
        failElement(element, "stands where a property is expected");
    const CimName name = requiredAttribute(element, "NAME");
    const CimType type =
        isReference ? CimType::Reference : withEmbedding(element, typeAttribute(element, "TYPE"));
    CimValue found = CimValue::null(type, isArray);
    for (XmlElement child = firstChild(element); child; child = nextElement(child))
    {
        if (isTag(child, "QUALIFIER"))
            continue;
        if (!found.isNull())
            failElement(element, "has more than one value");
        found = value(type, child);
        if (found.isArray() != isArray)
            failElement(element, isArray ? "must hold an array" : "must not hold an array");
    }
    if (!into.set(name, std::move(found)))
        failElement(element, "occurs twice");
}

Instance ElementReader::instance(XmlElement element) const
{
    if (!isTag(element, "INSTANCE"))
        failElement(element, "stands where INSTANCE is expected");
    Instance result(requiredAttribute(element, "CLASSNAME"));
    for (XmlElement child = firstChild(element); child; child = nextElement(child))
    {
        if (isTag(child, "QUALIFIER"))
            continue;
        property(child, result);
        if (result.properties().size() > _limits.instanceProperties)
            failElement(element,
                        "has more than " + std::to_string(_limits.instanceProperties) + " properties");
    }
    return result;
}

Instance ElementReader::namedInstance(XmlElement element) const
{
    const XmlElement name = firstChild(element);
    const XmlElement body = nextElement(name);
    if (!isTag(element, "VALUE.NAMEDINSTANCE") || !isTag(name, "INSTANCENAME") || !body || nextElement(body))
        failElement(element, "must be a VALUE.NAMEDINSTANCE of INSTANCENAME and INSTANCE");
    Instance result = instance(body);
    result.setPath(path(name));
    return result;
}

Argument ElementReader::argument(XmlElement element) const
{
    Argument result;
    result.name = requiredAttribute(element, "NAME");
    const bool typed = element.attribute("PARAMTYPE").has_value();
    const CimType type =
        withEmbedding(element, typed ? typeAttribute(element, "PARAMTYPE") : CimType::String);
    result.typed = typed || type != CimType::String;
    if (!firstChild(element))
    {
        // Nothing says whether this NULL is an array: the declaration decides.
        result.value = CimValue::null(type);
        result.typed = false;
        return result;
    }
    const XmlElement child = onlyChild(element);
    if (isTag(child, "INSTANCE"))
        result.value = CimValue::embedded(CimType::Instance, instance(child));
    else if (isTag(child, "INSTANCENAME") || isTag(child, "CLASSNAME"))
        result.value = CimValue::reference(path(child));
    else if (!typed && (isTag(child, "VALUE.REFERENCE") || isTag(child, "VALUE.REFARRAY")))
        result.value = value(CimType::Reference, child);
    else
    {
        result.value = value(type, child);
        return result;
    }
    result.typed = true;
    return result;
}

} // namespace cimd
