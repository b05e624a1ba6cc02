// DSP0201 declarations to class and qualifier declarations.
#include "agent/repository/repository_reader.h"

#include "agent/cim/value_text.h"
#include "agent/repository/ClassRepository.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <pugixml.hpp>
#include <unordered_map>

namespace cimd
{
namespace
{

using pugi::xml_node;

// What is read stays until the agent ends, so vectors are as long as they need to be.
template <class Nodes>
std::size_t count(const Nodes& nodes)
{
    return static_cast<std::size_t>(std::distance(nodes.begin(), nodes.end()));
}

class Reader
{
  public:
    Reader(ClassRepository& repository, std::string_view text, std::string fileName)
        : _repository(repository), _text(text), _fileName(std::move(fileName))
    {
    }

    void run();

  private:
    [[noreturn]] void fail(const xml_node& at, const std::string& reason) const;
    std::string place(std::ptrdiff_t offset) const;

    void readGroup(const xml_node& group);
    QualifierDecl readQualifierDecl(const xml_node& node);
    ClassDecl readClass(const xml_node& node);
    PropertyDecl readProperty(const xml_node& node, bool isArray, bool isReference);
    MethodDecl readMethod(const xml_node& node);
    ParameterDecl readParameter(const xml_node& node, bool isArray, bool isReference);

    CimName name(const xml_node& node, const char* attribute = "NAME");
    CimName optionalName(const xml_node& node, const char* attribute);
    CimName shared(const char* text);
    CimType type(const xml_node& node) const;
    bool flag(const xml_node& node, const char* attribute, bool absent) const;
    Flavor flavor(const xml_node& node, const Flavor& absent) const;
    Qualifiers readQualifiers(const xml_node& node);
    CimValue readValue(const xml_node& node, CimType type, bool isArray) const;
    CimValue readScalar(const xml_node& value, CimType type) const;
    void readElement(TypedElement& element, const xml_node& node, bool isArray, bool isReference);
    CimName embedded(const xml_node& node, const Qualifiers& qualifiers, CimType& type);

    ClassRepository& _repository;
    std::string_view _text;
    std::string _fileName;
    std::string _className;                          // while its declaration is read
    std::unordered_map<std::string, CimName> _names; // one text for each spelling
};

std::string Reader::place(std::ptrdiff_t offset) const
{
    const auto length = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
    const std::string_view before = _text.substr(0, length);
    return _fileName + ":" + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + ": ";
}

void Reader::fail(const xml_node& at, const std::string& reason) const
{
    throw RepositoryError(place(at.offset_debug()) +
                          (_className.empty() ? "" : "class " + _className + ": ") + reason);
}

CimName Reader::shared(const char* text)
{
    CimName& known = _names[text];
    if (known.empty())
        known = CimName(text);
    return known;
}

CimName Reader::optionalName(const xml_node& node, const char* attribute)
{
    const pugi::xml_attribute value = node.attribute(attribute);
    return value.value()[0] == '\0' ? CimName() : shared(value.value());
}

CimName Reader::name(const xml_node& node, const char* attribute)
{
    CimName result = optionalName(node, attribute);
    if (result.empty())
        fail(node, std::string(node.name()) + " without " + attribute);
    return result;
}

CimType Reader::type(const xml_node& node) const
{
    const char* text = node.attribute("TYPE").value();
    if (const auto known = typeFromName(text))
        return *known;
    fail(node,
         std::string(node.name()) + " " + node.attribute("NAME").value() + ": \"" + text +
             "\" is no CIM data type");
}

bool Reader::flag(const xml_node& node, const char* attribute, bool absent) const
{
    const pugi::xml_attribute value = node.attribute(attribute);
    if (!value)
        return absent;
    const auto truth = parseScalar(CimType::Boolean, value.value());
    if (!truth)
        fail(node, std::string(attribute) + " is \"" + value.value() + "\", neither true nor false");
    return truth->asBoolean();
}

Flavor Reader::flavor(const xml_node& node, const Flavor& absent) const
{
    return {flag(node, "OVERRIDABLE", absent.overridable),
            flag(node, "TOSUBCLASS", absent.toSubclass),
            flag(node, "TOINSTANCE", absent.toInstance),
            flag(node, "TRANSLATABLE", absent.translatable)};
}

CimValue Reader::readScalar(const xml_node& value, CimType type) const
{
    const char* text = value.child_value();
    if (auto scalar = parseScalar(type, text))
        return std::move(*scalar);
    fail(value, "\"" + std::string(text) + "\" is no " + typeText(type, false));
}

CimValue Reader::readValue(const xml_node& node, CimType type, bool isArray) const
{
    const xml_node value = node.child(isArray ? "VALUE.ARRAY" : "VALUE");
    if (!value)
        return CimValue::null(type, isArray);
    if (!isArray)
        return readScalar(value, type);
    CimValue::Elements elements;
    elements.reserve(count(value.children()));
    for (const xml_node element : value.children())
        elements.push_back(std::string_view(element.name()) == "VALUE.NULL" ? CimValue::null(type)
                                                                            : readScalar(element, type));
    return CimValue::array(type, std::move(elements));
}

Qualifiers Reader::readQualifiers(const xml_node& node)
{
    Qualifiers result;
    result.reserve(count(node.children("QUALIFIER")));
    for (const xml_node child : node.children("QUALIFIER"))
    {
        Qualifier qualifier;
        qualifier.name = name(child);
        const QualifierDecl* declared = _repository.findQualifier(qualifier.name);
        qualifier.flavor = flavor(child, declared ? declared->flavor : Flavor());
        qualifier.value = readValue(child, type(child), bool(child.child("VALUE.ARRAY")));
        if (findQualifier(result, qualifier.name))
            fail(child, "qualifier " + qualifier.name.str() + " is given twice");
        result.push_back(std::move(qualifier));
    }
    return result;
}

// Embedded instances and objects are strings with a qualifier, an attribute or both; gives the class, if one
// is named.
CimName Reader::embedded(const xml_node& node, const Qualifiers& qualifiers, CimType& type)
{
    if (type != CimType::String)
        return {};
    const Qualifier* instance = findQualifier(qualifiers, "EmbeddedInstance");
    const std::string_view attribute = node.attribute("EmbeddedObject").value();
    if ((instance && !instance->value.isNull()) || attribute == "instance")
        type = CimType::Instance;
    else if (qualifierIsTrue(qualifiers, "EmbeddedObject") || attribute == "object")
        type = CimType::Object;
    if (!instance || !instance->value.hasType(CimType::String, false) || instance->value.isNull())
        return {};
    return shared(instance->value.asString().c_str());
}

void Reader::readElement(TypedElement& element, const xml_node& node, bool isArray, bool isReference)
{
    element.name = name(node);
    element.type = isReference ? CimType::Reference : type(node);
    element.isArray = isArray;
    element.qualifiers = readQualifiers(node);
    element.referenceClass =
        isReference ? optionalName(node, "REFERENCECLASS") : embedded(node, element.qualifiers, element.type);
    const std::string_view size = node.attribute("ARRAYSIZE").value();
    const auto parsed = std::from_chars(size.data(), size.data() + size.size(), element.arraySize);
    if (!size.empty() && (parsed.ec != std::errc() || parsed.ptr != size.data() + size.size()))
        fail(node, "ARRAYSIZE is \"" + std::string(size) + "\", no number");
}

PropertyDecl Reader::readProperty(const xml_node& node, bool isArray, bool isReference)
{
    PropertyDecl property;
    readElement(property, node, isArray, isReference);
    const bool hasText = property.type != CimType::Reference && !isEmbedded(property.type);
    property.defaultValue =
        hasText ? readValue(node, property.type, isArray) : CimValue::null(property.type, isArray);
    return property;
}

ParameterDecl Reader::readParameter(const xml_node& node, bool isArray, bool isReference)
{
    ParameterDecl parameter;
    readElement(parameter, node, isArray, isReference);
    return parameter;
}

MethodDecl Reader::readMethod(const xml_node& node)
{
    MethodDecl method;
    method.name = name(node);
    method.returnType = type(node);
    method.qualifiers = readQualifiers(node);
    method.returnClass = embedded(node, method.qualifiers, method.returnType);
    for (const xml_node child : node.children())
    {
        const std::string_view element = child.name();
        if (element == "QUALIFIER")
            continue;
        if (element == "PARAMETER")
            method.parameters.push_back(readParameter(child, false, false));
        else if (element == "PARAMETER.ARRAY")
            method.parameters.push_back(readParameter(child, true, false));
        else if (element == "PARAMETER.REFERENCE")
            method.parameters.push_back(readParameter(child, false, true));
        else if (element == "PARAMETER.REFARRAY")
            method.parameters.push_back(readParameter(child, true, true));
        else
            fail(child, "unexpected element " + std::string(element) + " in method " + method.name.str());
    }
    return method;
}

ClassDecl Reader::readClass(const xml_node& node)
{
    ClassDecl result;
    result.name = name(node);
    _className = result.name.str();
    result.superClass = optionalName(node, "SUPERCLASS");
    result.qualifiers = readQualifiers(node);
    const auto methods = count(node.children("METHOD"));
    result.methods.reserve(methods);
    result.properties.reserve(count(node.children()) - methods - result.qualifiers.size());
    for (const xml_node child : node.children())
    {
        const std::string_view element = child.name();
        if (element == "QUALIFIER")
            continue;
        if (element == "PROPERTY")
            result.properties.push_back(readProperty(child, false, false));
        else if (element == "PROPERTY.ARRAY")
            result.properties.push_back(readProperty(child, true, false));
        else if (element == "PROPERTY.REFERENCE")
            result.properties.push_back(readProperty(child, false, true));
        else if (element == "METHOD")
            result.methods.push_back(readMethod(child));
        else
            fail(child, "unexpected element " + std::string(element));
    }
    return result;
}

QualifierDecl Reader::readQualifierDecl(const xml_node& node)
{
    QualifierDecl decl;
    decl.name = name(node);
    decl.type = type(node);
    decl.isArray = flag(node, "ISARRAY", false);
    decl.flavor = flavor(node, {});
    decl.value = readValue(node, decl.type, decl.isArray);
    const xml_node scope = node.child("SCOPE");
    decl.onClass = flag(scope, "CLASS", false);
    decl.onAssociation = flag(scope, "ASSOCIATION", false);
    decl.onReference = flag(scope, "REFERENCE", false);
    decl.onProperty = flag(scope, "PROPERTY", false);
    decl.onMethod = flag(scope, "METHOD", false);
    decl.onParameter = flag(scope, "PARAMETER", false);
    decl.onIndication = flag(scope, "INDICATION", false);
    return decl;
}

void Reader::readGroup(const xml_node& group)
{
    for (const xml_node child : group.children())
    {
        // A class may stand in a VALUE.OBJECT of its own.
        const bool isWrapped = std::string_view(child.name()) == "VALUE.OBJECT";
        const xml_node node = isWrapped ? child.first_child() : child;
        const std::string_view element = node.name();
        try
        {
            if (element == "CLASS")
                _repository.addClass(readClass(node));
            else if (element == "QUALIFIER.DECLARATION")
                _repository.addQualifier(readQualifierDecl(node));
            else
                fail(node, "unexpected element " + std::string(element));
        }
        catch (const RepositoryError& error)
        {
            // Errors of the repository itself do not know the place yet.
            if (std::string_view(error.what()).substr(0, _fileName.size() + 1) == _fileName + ":")
                throw;
            fail(node, error.what());
        }
        _className.clear();
    }
}

void Reader::run()
{
    pugi::xml_document document;
    // White space in a string value is part of it.
    const pugi::xml_parse_result parsed =
        document.load_buffer(_text.data(), _text.size(), pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (!parsed)
        throw RepositoryError(place(parsed.offset) + "not well-formed: " + parsed.description());
    const xml_node declaration = document.child("CIM").child("DECLARATION");
    if (!declaration)
        throw RepositoryError(place(0) + "no CIM/DECLARATION element");
    for (const xml_node group : declaration.children("DECLGROUP"))
        readGroup(group);
}

} // namespace

void readRepository(ClassRepository& repository, std::string_view text, const std::string& fileName)
{
    Reader(repository, text, fileName).run();
}

} // namespace cimd
