// Indications as CIM-XML.
#include "delivery/indication_xml.h"

#include "xml/XmlWriter.h"
#include "xml/scalar_text.h"

#include <charconv>

namespace cimple
{

namespace
{

using cimxml::XmlWriter;

void writeInstance(XmlWriter& xml, const Instance& instance);
void writeReference(XmlWriter& xml, const Instance& referred);

std::string_view view(const String& text)
{
    return {text.c_str(), text.size()};
}

void writeText(XmlWriter& xml, boolean value)
{
    xml.raw(value ? "TRUE" : "FALSE");
}
void writeText(XmlWriter& xml, real32 value)
{
    cimxml::appendReal(xml.out(), value);
}
void writeText(XmlWriter& xml, real64 value)
{
    cimxml::appendReal(xml.out(), value);
}
void writeText(XmlWriter& xml, char16 value)
{
    std::string character;
    cimxml::appendChar16(character, value.code());
    xml.text(character);
}
void writeText(XmlWriter& xml, const String& value)
{
    xml.text(view(value));
}
void writeText(XmlWriter& xml, const Datetime& value)
{
    char text[Datetime::BUFFER_SIZE];
    value.ascii(text);
    xml.raw(text);
}
template <class INTEGER>
void writeText(XmlWriter& xml, INTEGER value)
{
    cimxml::appendNumber(xml.out(), value);
}

template <class T>
void writeScalar(XmlWriter& xml, const T& value)
{
    xml.start("VALUE");
    writeText(xml, value);
    xml.close("VALUE");
}

// What is written of a value whose type is known.
struct Value_Writer
{
    void (*scalar)(XmlWriter& xml, const void* value);
    void (*array)(XmlWriter& xml, const void* values);
    void (*text)(XmlWriter& xml, const void* value);
};

template <class T>
constexpr Value_Writer writerOf()
{
    return {[](XmlWriter& xml, const void* value) { writeScalar(xml, *static_cast<const T*>(value)); },
            [](XmlWriter& xml, const void* values)
            {
                const auto& array = *static_cast<const Array<T>*>(values);
                for (size_t i = 0; i < array.size(); ++i)
                    writeScalar(xml, array[i]);
            },
            [](XmlWriter& xml, const void* value) { writeText(xml, *static_cast<const T*>(value)); }};
}

#define VALUE_WRITER(T, CODE) writerOf<T>(),
constexpr Value_Writer kWriters[] = {CIMPLE_FOR_EACH_TYPE(VALUE_WRITER)}; // by Type
#undef VALUE_WRITER

bool isEmbedded(const Meta_Reference& reference)
{
    return (reference.flags & (CIMPLE_FLAG_EMBEDDED_OBJECT | CIMPLE_FLAG_EMBEDDED_INSTANCE)) != 0;
}

void writeProperty(XmlWriter& xml, const Instance& instance, const Meta_Property& property)
{
    const void* const field = __property_of(&instance, &property);
    if (null_of(&property, field) != 0)
        return;
    const bool isArray = property.subscript != 0;
    const std::string_view tag = isArray ? "PROPERTY.ARRAY" : "PROPERTY";
    xml.open(tag).attribute("NAME", property.name).attribute("TYPE", type_name[property.type]).content();
    if (isArray)
        xml.start("VALUE.ARRAY");
    (isArray ? kWriters[property.type].array : kWriters[property.type].scalar)(xml, field);
    if (isArray)
        xml.close("VALUE.ARRAY");
    xml.close(tag);
}

void writeEmbeddedValue(XmlWriter& xml, const Instance* embedded)
{
    if (embedded == nullptr)
        return xml.open("VALUE.NULL").empty();
    std::string text;
    XmlWriter inner(text);
    writeInstance(inner, *embedded);
    xml.element("VALUE", text);
}

void writeEmbedded(XmlWriter& xml, const Instance& instance, const Meta_Reference& reference)
{
    const bool isArray = reference.subscript != 0;
    if (isArray ? __array_ref_of(&instance, &reference).null != 0
                : __ref_of(&instance, &reference) == nullptr)
        return;
    const bool isTyped = (reference.flags & CIMPLE_FLAG_EMBEDDED_INSTANCE) != 0;
    const std::string_view tag = isArray ? "PROPERTY.ARRAY" : "PROPERTY";
    xml.open(tag).attribute("NAME", reference.name).attribute("TYPE", "string");
    xml.attribute("EmbeddedObject", isTyped ? "instance" : "object").content();
    if (isArray)
    {
        const Array_Instance& elements = __array_ref_of(&instance, &reference).value;
        xml.start("VALUE.ARRAY");
        for (size_t i = 0; i < elements.size(); ++i)
            writeEmbeddedValue(xml, elements[i]);
        xml.close("VALUE.ARRAY");
    }
    else
    {
        writeEmbeddedValue(xml, __ref_of(&instance, &reference));
    }
    xml.close(tag);
}

void writeReferenceProperty(XmlWriter& xml, const Instance& instance, const Meta_Reference& reference)
{
    const Instance* const referred = reference.subscript == 0 ? __ref_of(&instance, &reference) : nullptr;
    if (referred == nullptr)
        return;
    xml.open("PROPERTY.REFERENCE").attribute("NAME", reference.name).content();
    writeReference(xml, *referred);
    xml.close("PROPERTY.REFERENCE");
}

std::string_view keyKind(std::uint16_t type)
{
    if (type == BOOLEAN)
        return "boolean";
    return type >= UINT8 && type <= REAL64 ? "numeric" : "string";
}

void writeKey(XmlWriter& xml, const Instance& instance, const Meta_Feature& feature)
{
    xml.open("KEYBINDING").attribute("NAME", feature.name).content();
    if ((feature.flags & CIMPLE_FLAG_PROPERTY) != 0)
    {
        const auto& property = reinterpret_cast<const Meta_Property&>(feature);
        xml.open("KEYVALUE").attribute("VALUETYPE", keyKind(property.type)).content();
        kWriters[property.type].text(xml, __property_of(&instance, &property));
        xml.close("KEYVALUE");
    }
    else if (const Instance* key = __ref_of(&instance, &reinterpret_cast<const Meta_Reference&>(feature)))
    {
        writeReference(xml, *key);
    }
    xml.close("KEYBINDING");
}

void writeReference(XmlWriter& xml, const Instance& referred)
{
    const Meta_Class& metaClass = *referred.meta_class;
    xml.start("VALUE.REFERENCE");
    xml.open("INSTANCENAME").attribute("CLASSNAME", metaClass.name).content();
    for (size_t i = 0; i < metaClass.num_meta_features; ++i)
        if ((metaClass.meta_features[i]->flags & CIMPLE_FLAG_KEY) != 0)
            writeKey(xml, referred, *metaClass.meta_features[i]);
    xml.close("INSTANCENAME");
    xml.close("VALUE.REFERENCE");
}

void writeInstance(XmlWriter& xml, const Instance& instance)
{
    const Meta_Class& metaClass = *instance.meta_class;
    xml.open("INSTANCE").attribute("CLASSNAME", metaClass.name).content();
    for (size_t i = 0; i < metaClass.num_meta_features; ++i)
    {
        const Meta_Feature& feature = *metaClass.meta_features[i];
        if ((feature.flags & CIMPLE_FLAG_PROPERTY) != 0)
        {
            writeProperty(xml, instance, reinterpret_cast<const Meta_Property&>(feature));
        }
        else if ((feature.flags & CIMPLE_FLAG_REFERENCE) != 0)
        {
            const auto& reference = reinterpret_cast<const Meta_Reference&>(feature);
            (isEmbedded(reference) ? writeEmbedded : writeReferenceProperty)(xml, instance, reference);
        }
    }
    xml.close("INSTANCE");
}

// The value of an attribute within a tag; empty when it has none.
std::string_view attributeOf(std::string_view tag, std::string_view name)
{
    for (std::size_t at = tag.find(name); at != tag.npos; at = tag.find(name, at + 1))
    {
        std::size_t start = at + name.size();
        if (tag.substr(start, 1) != "=" ||
            (at > 0 && std::string_view(" \t\r\n").find(tag[at - 1]) == tag.npos))
            continue;
        const std::string_view quote = tag.substr(++start, 1);
        if (quote == "\"" || quote == "'")
            return tag.substr(start + 1, tag.find(quote, start + 1) - (start + 1));
    }
    return {};
}

} // namespace

std::string exportMessage(const Instance& indication, std::string_view messageId)
{
    constexpr std::size_t kUsualSize = 2048;
    std::string text;
    text.reserve(kUsualSize);
    XmlWriter xml(text);
    xml.raw("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">");
    xml.open("MESSAGE").attribute("ID", messageId).attribute("PROTOCOLVERSION", "1.0").content();
    xml.start("SIMPLEEXPREQ");
    xml.open("EXPMETHODCALL").attribute("NAME", "ExportIndication").content();
    xml.open("EXPPARAMVALUE").attribute("NAME", "NewIndication").content();
    writeInstance(xml, indication);
    for (const char* tag : {"EXPPARAMVALUE", "EXPMETHODCALL", "SIMPLEEXPREQ", "MESSAGE", "CIM"})
        xml.close(tag);
    return text;
}

unsigned cimErrorOf(std::string_view answer, std::string& description)
{
    const std::size_t start = answer.find("<ERROR");
    if (start == answer.npos)
        return 0;
    const std::string_view tag = answer.substr(start, answer.find('>', start) - start);
    description = attributeOf(tag, "DESCRIPTION");
    const std::string_view code = attributeOf(tag, "CODE");
    unsigned number = 0;
    std::from_chars(code.data(), code.data() + code.size(), number);
    return number == 0 || number > kMalformedCimError ? kMalformedCimError : number;
}

} // namespace cimple
