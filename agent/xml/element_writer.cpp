// From values to elements.
#include "agent/xml/element_writer.h"

#include "agent/cim/CimError.h"
#include "agent/cim/value_text.h"
#include "xml/scalar_text.h"

namespace cimd
{

namespace
{

using cimxml::appendNumber;

std::string_view keyKind(CimType type)
{
    if (type == CimType::Boolean)
        return "boolean";
    return isInteger(type) || isReal(type) ? "numeric" : "string";
}

void writeScalarText(XmlWriter& xml, const CimValue& value)
{
    switch (value.type())
    {
    case CimType::String:
        return xml.text(value.asString());
    case CimType::DateTime:
        return xml.raw(value.asDateTime().text());
    case CimType::Instance:
    case CimType::Object:
    {
        std::string embedded;
        XmlWriter inner(embedded);
        writeInstance(inner, value.asInstance());
        return xml.text(embedded);
    }
    case CimType::Char16:
    {
        std::string character;
        appendText(character, value);
        return xml.text(character);
    }
    default: // numbers and booleans need no escaping
        return appendText(xml.out(), value);
    }
}

void writeScalar(XmlWriter& xml, const CimValue& value)
{
    if (value.type() == CimType::Reference)
        return writeReference(xml, value.asReference());
    xml.start("VALUE");
    writeScalarText(xml, value);
    xml.close("VALUE");
}

void writeBytes(XmlWriter& xml, const CimValue::Bytes& bytes)
{
    constexpr std::size_t kAtOnce = 1024; // some 18 KiB
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        if (i % kAtOnce == kAtOnce - 1)
            xml.relieve();
        xml.raw("<VALUE>");
        appendNumber(xml.out(), unsigned{bytes[i]});
        xml.raw("</VALUE>");
    }
}

void writeElements(XmlWriter& xml, const CimValue::Elements& elements)
{
    for (const CimValue& element : elements)
        if (element.isNull())
            xml.open("VALUE.NULL").empty();
        else
            writeScalar(xml, element);
}

PropertyTags::Tags tagsOf(const Property& property)
{
    const CimType type = property.value.type();
    PropertyTags::Tags tags{property.name, type, property.value.isArray(), {}, {}};
    if (type == CimType::Reference && tags.isArray)
        throw CimError(CimStatus::Failed,
                       "property " + property.name.str() +
                           ": CIM-XML has no arrays of references in instances");
    tags.end = type == CimType::Reference ? "</PROPERTY.REFERENCE>"
               : tags.isArray             ? "</PROPERTY.ARRAY>"
                                          : "</VALUE></PROPERTY>";
    XmlWriter xml(tags.start);
    xml.open(type == CimType::Reference ? "PROPERTY.REFERENCE"
             : tags.isArray             ? "PROPERTY.ARRAY"
                                        : "PROPERTY");
    xml.attribute("NAME", property.name.str());
    if (type != CimType::Reference)
        xml.attribute("TYPE", typeName(type));
    if (!property.classOrigin.empty())
        xml.attribute("CLASSORIGIN", property.classOrigin.str());
    writeEmbeddedAttribute(xml, type);
    xml.content();
    if (tags.opensValue())
        xml.start("VALUE");
    return tags;
}

void writeProperty(XmlWriter& xml, const CimValue& value, const PropertyTags::Tags& tags)
{
    std::string_view start = tags.start;
    std::string_view end = tags.end;
    if (value.isNull() && tags.opensValue())
    {
        // NULL takes two tags as well: sblim-wbemcli reads the one-tag form only of elements that never hold
        // anything.
        start.remove_suffix(std::string_view("<VALUE>").size());
        end.remove_prefix(std::string_view("</VALUE>").size());
    }
    xml.raw(start);
    if (!value.isNull())
        tags.opensValue() ? writeScalarText(xml, value) : writeValue(xml, value);
    xml.raw(end);
}

} // namespace

void writeLocalNameSpacePath(XmlWriter& xml, const std::string& nameSpace)
{
    xml.start("LOCALNAMESPACEPATH");
    for (std::size_t at = 0; at <= nameSpace.size();)
    {
        const std::size_t end = std::min(nameSpace.find('/', at), nameSpace.size());
        xml.open("NAMESPACE").attribute("NAME", std::string_view(nameSpace).substr(at, end - at)).empty();
        at = end + 1;
    }
    xml.close("LOCALNAMESPACEPATH");
}

void writeClassName(XmlWriter& xml, const CimName& name)
{
    xml.open("CLASSNAME").attribute("NAME", name.str()).empty();
}

void writeInstanceName(XmlWriter& xml, const ObjectPath& path)
{
    xml.open("INSTANCENAME").attribute("CLASSNAME", path.className().str()).content();
    for (const KeyBinding& key : path.keys())
    {
        xml.raw("<KEYBINDING NAME=\"");
        xml.text(key.name.str());
        const CimType type = key.value.type();
        if (type == CimType::Reference)
        {
            xml.raw("\">");
            writeReference(xml, key.value.asReference());
            xml.raw("</KEYBINDING>");
            continue;
        }
        xml.raw("\"><KEYVALUE VALUETYPE=\"");
        xml.raw(keyKind(type));
        xml.raw("\" TYPE=\"");
        xml.raw(typeName(type));
        xml.raw("\">");
        writeScalarText(xml, key.value);
        xml.raw("</KEYVALUE></KEYBINDING>");
    }
    xml.close("INSTANCENAME");
}

void writeInstancePath(XmlWriter& xml, const std::string& host, const ObjectPath& path)
{
    xml.start("INSTANCEPATH");
    xml.start("NAMESPACEPATH");
    xml.element("HOST", host);
    writeLocalNameSpacePath(xml, path.nameSpace());
    xml.close("NAMESPACEPATH");
    writeInstanceName(xml, path);
    xml.close("INSTANCEPATH");
}

void writeReference(XmlWriter& xml, const ObjectPath& path)
{
    xml.start("VALUE.REFERENCE");
    if (path.nameSpace().empty())
        writeInstanceName(xml, path);
    else if (!path.host().empty())
        writeInstancePath(xml, path.host(), path);
    else
    {
        xml.start("LOCALINSTANCEPATH");
        writeLocalNameSpacePath(xml, path.nameSpace());
        writeInstanceName(xml, path);
        xml.close("LOCALINSTANCEPATH");
    }
    xml.close("VALUE.REFERENCE");
}

void writeValue(XmlWriter& xml, const CimValue& value)
{
    if (value.isNull())
        return;
    if (!value.isArray())
        return writeScalar(xml, value);
    const std::string_view tag = value.type() == CimType::Reference ? "VALUE.REFARRAY" : "VALUE.ARRAY";
    xml.start(tag);
    if (value.holdsBytes())
        writeBytes(xml, value.asBytes());
    else
        writeElements(xml, value.elements());
    xml.close(tag);
}

void writeEmbeddedAttribute(XmlWriter& xml, CimType type)
{
    if (isEmbedded(type))
        xml.attribute("EmbeddedObject", type == CimType::Instance ? "instance" : "object");
}

const PropertyTags::Tags& PropertyTags::of(const Property& property, std::size_t index)
{
    const bool isRemembered = index < _tags.size() && property.classOrigin.empty() &&
                              _tags[index].name.shares(property.name) &&
                              property.value.hasType(_tags[index].type, _tags[index].isArray);
    if (isRemembered)
        return _tags[index];
    Tags tags = tagsOf(property);
    if (!property.classOrigin.empty())
        tags.name = CimName(); // shared with no other property
    if (index >= _tags.size())
        _tags.resize(index + 1);
    return _tags[index] = std::move(tags);
}

void writeInstance(XmlWriter& xml, const Instance& instance, PropertyTags& tags)
{
    xml.open("INSTANCE").attribute("CLASSNAME", instance.className().str()).content();
    const std::vector<Property>& properties = instance.properties();
    for (std::size_t i = 0; i < properties.size(); ++i)
        writeProperty(xml, properties[i].value, tags.of(properties[i], i));
    xml.close("INSTANCE");
}

void writeNamedInstance(XmlWriter& xml, const Instance& instance, PropertyTags& tags)
{
    xml.start("VALUE.NAMEDINSTANCE");
    writeInstanceName(xml, instance.path());
    writeInstance(xml, instance, tags);
    xml.close("VALUE.NAMEDINSTANCE");
}

void writeObjectWithPath(XmlWriter& xml,
                         const std::string& host,
                         const Instance& instance,
                         PropertyTags& tags)
{
    xml.start("VALUE.OBJECTWITHPATH");
    writeInstancePath(xml, host, instance.path());
    writeInstance(xml, instance, tags);
    xml.close("VALUE.OBJECTWITHPATH");
}

void writeObjectPath(XmlWriter& xml, const std::string& host, const ObjectPath& path)
{
    xml.start("OBJECTPATH");
    writeInstancePath(xml, host, path);
    xml.close("OBJECTPATH");
}

void writeArgument(XmlWriter& xml, const Argument& argument)
{
    const CimType type = argument.value.type();
    xml.open("PARAMVALUE").attribute("NAME", argument.name.str()).attribute("PARAMTYPE", typeName(type));
    writeEmbeddedAttribute(xml, type);
    xml.content();
    if (!argument.value.isNull())
        writeValue(xml, argument.value);
    xml.close("PARAMVALUE");
}

void writeReturnValue(XmlWriter& xml, const CimValue& value)
{
    if (value.isNull())
        return;
    xml.open("RETURNVALUE").attribute("PARAMTYPE", typeName(value.type()));
    writeEmbeddedAttribute(xml, value.type());
    xml.content();
    writeValue(xml, value);
    xml.close("RETURNVALUE");
}

} // namespace cimd
