// From values to elements.
#include "agent/xml/element_writer.h"

#include "agent/cim/CimError.h"
#include "agent/cim/value_text.h"
#include "xml/scalar_text.h"

#include <algorithm>
#include <utility>

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

// Scalars stand in a VALUE, references and arrays bring elements of their own.
bool opensValue(const CimValue& value)
{
    return !value.isArray() && value.type() != CimType::Reference;
}

// The start of a property's element, without that of its value.
void openProperty(XmlWriter& xml, const Property& property)
{
    const CimType type = property.value.type();
    if (type == CimType::Reference && property.value.isArray())
        throw CimError(CimStatus::Failed,
                       "property " + property.name.str() +
                           ": CIM-XML has no arrays of references in instances");
    xml.open(type == CimType::Reference ? "PROPERTY.REFERENCE"
             : property.value.isArray() ? "PROPERTY.ARRAY"
                                        : "PROPERTY");
    xml.attribute("NAME", property.name.str());
    if (type != CimType::Reference)
        xml.attribute("TYPE", typeName(type));
    if (!property.classOrigin.empty())
        xml.attribute("CLASSORIGIN", property.classOrigin.str());
    writeEmbeddedAttribute(xml, type);
    xml.content();
}

std::string_view propertyEnd(const CimValue& value)
{
    return value.type() == CimType::Reference ? "</PROPERTY.REFERENCE>"
           : value.isArray()                  ? "</PROPERTY.ARRAY>"
                                              : "</PROPERTY>";
}

void openInstanceName(XmlWriter& xml, const ObjectPath& path)
{
    xml.open("INSTANCENAME").attribute("CLASSNAME", path.className().str()).content();
}

void openKey(XmlWriter& xml, const KeyBinding& key)
{
    const CimType type = key.value.type();
    xml.open("KEYBINDING").attribute("NAME", key.name.str()).content();
    if (type != CimType::Reference)
        xml.open("KEYVALUE")
            .attribute("VALUETYPE", keyKind(type))
            .attribute("TYPE", typeName(type))
            .content();
}

void writeKeyValue(XmlWriter& xml, const CimValue& value)
{
    if (value.type() == CimType::Reference)
        writeReference(xml, value.asReference());
    else
        writeScalarText(xml, value);
}

std::string_view keyEnd(CimType type)
{
    return type == CimType::Reference ? "</KEYBINDING>" : "</KEYVALUE></KEYBINDING>";
}

void writeNameSpacePath(XmlWriter& xml, const std::string& host, const std::string& nameSpace)
{
    xml.start("NAMESPACEPATH");
    xml.element("HOST", host);
    writeLocalNameSpacePath(xml, nameSpace);
    xml.close("NAMESPACEPATH");
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
    openInstanceName(xml, path);
    for (const KeyBinding& key : path.keys())
    {
        openKey(xml, key);
        writeKeyValue(xml, key.value);
        xml.raw(keyEnd(key.value.type()));
    }
    xml.close("INSTANCENAME");
}

void writeInstancePath(XmlWriter& xml, const std::string& host, const ObjectPath& path, ClassMarkup& markup)
{
    xml.start("INSTANCEPATH");
    writeNameSpacePath(xml, host, path.nameSpace());
    markup.writeName(xml, path);
    xml.close("INSTANCEPATH");
}

void writeReference(XmlWriter& xml, const ObjectPath& path)
{
    xml.start("VALUE.REFERENCE");
    if (path.nameSpace().empty())
        writeInstanceName(xml, path);
    else if (!path.host().empty())
    {
        xml.start("INSTANCEPATH");
        writeNameSpacePath(xml, path.host(), path.nameSpace());
        writeInstanceName(xml, path);
        xml.close("INSTANCEPATH");
    }
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

bool ClassMarkup::fits(const ObjectPath& path) const
{
    return _pathClass.shares(path.className()) &&
           std::equal(_keys.begin(),
                      _keys.end(),
                      path.keys().begin(),
                      path.keys().end(),
                      [](const Key& known, const KeyBinding& key)
                      { return known.name.shares(key.name) && known.type == key.value.type(); });
}

void ClassMarkup::remember(const ObjectPath& path)
{
    _pathClass = path.className();
    _keys.clear();
    std::string markup;
    XmlWriter xml(markup);
    openInstanceName(xml, path);
    for (const KeyBinding& key : path.keys())
    {
        openKey(xml, key);
        _keys.push_back({key.name, key.value.type(), std::exchange(markup, {})});
        xml.raw(keyEnd(key.value.type()));
    }
    xml.close("INSTANCENAME");
    _pathEnd = std::move(markup);
}

void ClassMarkup::writeName(XmlWriter& xml, const ObjectPath& path)
{
    if (!fits(path))
        remember(path);
    for (std::size_t i = 0; i < _keys.size(); ++i)
    {
        xml.raw(_keys[i].before);
        writeKeyValue(xml, path.keys()[i].value);
    }
    xml.raw(_pathEnd);
}

bool ClassMarkup::fits(const Instance& instance) const
{
    return _class.shares(instance.className()) &&
           std::equal(_elements.begin(),
                      _elements.end(),
                      instance.properties().begin(),
                      instance.properties().end(),
                      [](const Element& known, const Property& property)
                      {
                          return known.name.shares(property.name) &&
                                 known.classOrigin.identical(property.classOrigin) &&
                                 property.value.hasType(known.type, known.isArray);
                      });
}

void ClassMarkup::remember(const Instance& instance)
{
    _class = CimName(); // nothing fits until all is there
    _elements.clear();
    _open.clear();
    _nulls.clear();
    XmlWriter(_open).open("INSTANCE").attribute("CLASSNAME", instance.className().str()).content();
    for (const Property& property : instance.properties())
    {
        std::string start;
        XmlWriter xml(start);
        openProperty(xml, property);
        // NULL takes two tags as well: sblim-wbemcli reads the one-tag form only of elements that never hold
        // anything.
        _nulls.append(start).append(propertyEnd(property.value));
        std::string_view end = propertyEnd(property.value);
        if (opensValue(property.value))
        {
            xml.start("VALUE");
            end = "</VALUE></PROPERTY>";
        }
        _elements.push_back({property.name,
                             property.classOrigin,
                             property.value.type(),
                             property.value.isArray(),
                             std::move(start),
                             end,
                             _nulls.size()});
    }
    _class = instance.className();
}

void ClassMarkup::writeInstance(XmlWriter& xml, const Instance& instance)
{
    if (!fits(instance))
        remember(instance);
    xml.raw(_open);
    const std::vector<Property>& properties = instance.properties();
    std::size_t written = 0; // of _nulls, or passed over
    for (std::size_t i = 0; i < properties.size(); ++i)
    {
        const CimValue& value = properties[i].value;
        if (value.isNull())
            continue; // with those that follow
        const Element& element = _elements[i];
        const std::size_t nullsEnd = i == 0 ? 0 : _elements[i - 1].nullEnd;
        xml.raw(std::string_view(_nulls).substr(written, nullsEnd - written));
        written = element.nullEnd;
        xml.raw(element.start);
        opensValue(value) ? writeScalarText(xml, value) : writeValue(xml, value);
        xml.raw(element.end);
    }
    xml.raw(std::string_view(_nulls).substr(written));
    xml.close("INSTANCE");
}

void writeNamedInstance(XmlWriter& xml, const Instance& instance, ClassMarkup& markup)
{
    xml.raw("<VALUE.NAMEDINSTANCE>");
    markup.writeName(xml, instance.path());
    markup.writeInstance(xml, instance);
    xml.raw("</VALUE.NAMEDINSTANCE>");
}

void writeObjectWithPath(XmlWriter& xml,
                         const std::string& host,
                         const Instance& instance,
                         ClassMarkup& markup)
{
    xml.start("VALUE.OBJECTWITHPATH");
    writeInstancePath(xml, host, instance.path(), markup);
    markup.writeInstance(xml, instance);
    xml.close("VALUE.OBJECTWITHPATH");
}

void writeObjectPath(XmlWriter& xml, const std::string& host, const ObjectPath& path, ClassMarkup& markup)
{
    xml.start("OBJECTPATH");
    writeInstancePath(xml, host, path, markup);
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
