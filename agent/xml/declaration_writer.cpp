// From declarations to elements.
#include "agent/xml/declaration_writer.h"

#include "agent/xml/element_writer.h"

namespace cimd
{

namespace
{

void booleanAttribute(XmlWriter& xml, std::string_view name, bool value, bool byDefault)
{
    if (value != byDefault)
        xml.attribute(name, value ? "true" : "false");
}

void writeFlavor(XmlWriter& xml, const Flavor& flavor)
{
    booleanAttribute(xml, "OVERRIDABLE", flavor.overridable, true);
    booleanAttribute(xml, "TOSUBCLASS", flavor.toSubclass, true);
    booleanAttribute(xml, "TOINSTANCE", flavor.toInstance, false);
    booleanAttribute(xml, "TRANSLATABLE", flavor.translatable, false);
}

void writeQualifiers(XmlWriter& xml, const Qualifiers& qualifiers)
{
    for (const Qualifier& qualifier : qualifiers)
    {
        xml.open("QUALIFIER").attribute("NAME", qualifier.name.str());
        xml.attribute("TYPE", typeName(qualifier.value.type()));
        booleanAttribute(xml, "PROPAGATED", qualifier.propagated, false);
        writeFlavor(xml, qualifier.flavor);
        xml.content();
        if (!qualifier.value.isNull())
            writeValue(xml, qualifier.value);
        xml.close("QUALIFIER");
    }
}

// The tag's ending by what the element holds: "PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE" ...
std::string tagOf(std::string_view tag, const TypedElement& element)
{
    std::string result(tag);
    if (element.type == CimType::Reference)
        return result + (element.isArray ? ".REFARRAY" : ".REFERENCE");
    return result + (element.isArray ? ".ARRAY" : "");
}

// NAME, then TYPE or REFERENCECLASS, then ARRAYSIZE.
void openTyped(XmlWriter& xml, std::string_view tag, const TypedElement& element)
{
    xml.open(tag).attribute("NAME", element.name.str());
    if (element.type != CimType::Reference)
        xml.attribute("TYPE", typeName(element.type));
    else if (!element.referenceClass.empty())
        xml.attribute("REFERENCECLASS", element.referenceClass.str());
    if (element.isArray && element.arraySize != 0)
        xml.attribute("ARRAYSIZE", std::to_string(element.arraySize));
}

void writeOrigin(XmlWriter& xml, const CimName& classOrigin, bool propagated)
{
    if (!classOrigin.empty())
        xml.attribute("CLASSORIGIN", classOrigin.str());
    booleanAttribute(xml, "PROPAGATED", propagated, false);
}

void writePropertyDeclaration(XmlWriter& xml, const PropertyDecl& property)
{
    const std::string tag = tagOf("PROPERTY", property);
    openTyped(xml, tag, property);
    writeOrigin(xml, property.classOrigin, property.propagated);
    writeEmbeddedAttribute(xml, property.type);
    xml.content();
    writeQualifiers(xml, property.qualifiers);
    writeValue(xml, property.defaultValue);
    xml.close(tag);
}

void writeMethod(XmlWriter& xml, const MethodDecl& method)
{
    xml.open("METHOD").attribute("NAME", method.name.str()).attribute("TYPE", typeName(method.returnType));
    writeOrigin(xml, method.classOrigin, method.propagated);
    xml.content();
    writeQualifiers(xml, method.qualifiers);
    for (const ParameterDecl& parameter : method.parameters)
    {
        const std::string tag = tagOf("PARAMETER", parameter);
        openTyped(xml, tag, parameter);
        xml.content();
        writeQualifiers(xml, parameter.qualifiers);
        xml.close(tag);
    }
    xml.close("METHOD");
}

} // namespace

void writeClass(XmlWriter& xml, const ClassDecl& decl)
{
    xml.open("CLASS").attribute("NAME", decl.name.str());
    if (!decl.superClass.empty())
        xml.attribute("SUPERCLASS", decl.superClass.str());
    xml.content();
    writeQualifiers(xml, decl.qualifiers);
    for (const PropertyDecl& property : decl.properties)
        writePropertyDeclaration(xml, property);
    for (const MethodDecl& method : decl.methods)
        writeMethod(xml, method);
    xml.close("CLASS");
}

void writeQualifierDeclaration(XmlWriter& xml, const QualifierDecl& decl)
{
    xml.open("QUALIFIER.DECLARATION").attribute("NAME", decl.name.str());
    xml.attribute("TYPE", typeName(decl.type));
    xml.attribute("ISARRAY", decl.isArray ? "true" : "false");
    writeFlavor(xml, decl.flavor);
    xml.content();
    xml.open("SCOPE");
    booleanAttribute(xml, "CLASS", decl.onClass, false);
    booleanAttribute(xml, "ASSOCIATION", decl.onAssociation, false);
    booleanAttribute(xml, "REFERENCE", decl.onReference, false);
    booleanAttribute(xml, "PROPERTY", decl.onProperty, false);
    booleanAttribute(xml, "METHOD", decl.onMethod, false);
    booleanAttribute(xml, "PARAMETER", decl.onParameter, false);
    booleanAttribute(xml, "INDICATION", decl.onIndication, false);
    xml.empty();
    writeValue(xml, decl.value);
    xml.close("QUALIFIER.DECLARATION");
}

} // namespace cimd
