// Canned answers for the wire side's tests.
#include "tests/agent/ops/FakeService.h"

#include "agent/cim/ValueText.h"

#include <stdexcept>

namespace cimd
{
namespace
{

const char* const kNameSpace = "root/interop";

void check(const std::string& nameSpace, const CimName& className)
{
    if (nameSpace != kNameSpace)
        throw CimError(CimStatus::InvalidNamespace, "no namespace " + nameSpace);
    if (className == "Test_Broken")
        throw std::runtime_error("provider fell over");
    for (const char* known : {"Test_Echo", "Test_Values", "Test_Empty", "Test_Late", "Test_Many"})
        if (className == known)
            return;
    throw CimError(CimStatus::InvalidClass, "no class " + className.str());
}

std::string flags(std::initializer_list<std::pair<const char*, bool>> values)
{
    std::string text;
    for (const auto& [name, value] : values)
        text += std::string(value ? " " : " no ") + name;
    return text;
}

std::string list(const PropertyList& properties)
{
    if (!properties)
        return " all properties";
    std::string text = " properties (";
    for (const CimName& name : *properties)
        text += (text.back() == '(' ? "" : ",") + name.str();
    return text + ")";
}

ObjectPath echoPath(const std::string& text)
{
    ObjectPath path(kNameSpace, "Test_Echo");
    path.setKey("Text", CimValue::string(text));
    return path;
}

Instance echoInstance(const std::string& text)
{
    Instance instance("Test_Echo");
    instance.setPath(echoPath("1"));
    instance.set("Text", CimValue::string(text));
    return instance;
}

// Results of an operation that delivers items, by the class it is about.
template <class Item>
void deliver(const CimName& className, Sink<Item>& sink, const Item& echo, const Item& values)
{
    if (className == "Test_Empty")
        return;
    sink.put(className == "Test_Values" ? values : echo);
    for (int i = 0; i < 4 && className == "Test_Many"; ++i)
        sink.put(echo);
    if (className != "Test_Late")
        return;
    sink.put(echo);
    throw CimError(CimStatus::Failed, "the switch stopped answering");
}

void deliver(const ObjectPath& about, const std::string& text, Sink<Instance>& sink)
{
    check(about.nameSpace(), about.className());
    deliver(about.className(), sink, echoInstance(text), valuesInstance());
}

void deliver(const ObjectPath& about, const std::string& text, Sink<ObjectPath>& sink)
{
    check(about.nameSpace(), about.className());
    deliver(about.className(), sink, echoPath(text), valuesInstance().path());
}

Qualifier qualifier(const char* name, CimValue value)
{
    Qualifier result;
    result.name = name;
    result.value = std::move(value);
    return result;
}

template <class Element>
Element element(const char* name, CimType type, bool isArray = false)
{
    Element result;
    result.name = name;
    result.type = type;
    result.isArray = isArray;
    return result;
}

ClassDecl valuesClass()
{
    ClassDecl decl;
    decl.name = "Test_Values";
    decl.superClass = "Test_Base";
    decl.qualifiers.push_back(qualifier("Version", CimValue::string("1.0")));
    decl.qualifiers.back().flavor = {false, false, true, true};

    auto key = element<PropertyDecl>("Id", CimType::String);
    key.qualifiers.push_back(qualifier("Key", CimValue::boolean(true)));
    key.classOrigin = "Test_Base";
    key.propagated = true;
    auto array = element<PropertyDecl>("Numbers", CimType::Uint16, true);
    array.arraySize = 4;
    array.defaultValue =
        CimValue::array(CimType::Uint16, {CimValue::uint16(1), CimValue::null(CimType::Uint16)});
    auto reference = element<PropertyDecl>("Peer", CimType::Reference);
    reference.referenceClass = "Test_Echo";
    reference.defaultValue = CimValue::null(CimType::Reference);
    auto embedded = element<PropertyDecl>("Inner", CimType::Instance);
    embedded.defaultValue = CimValue::null(CimType::Instance);
    decl.properties = {key, array, reference, embedded};

    MethodDecl method;
    method.name = "Apply";
    method.classOrigin = "Test_Values";
    method.parameters = {element<ParameterDecl>("Plain", CimType::Uint8),
                         element<ParameterDecl>("List", CimType::String, true),
                         element<ParameterDecl>("Where", CimType::Reference),
                         element<ParameterDecl>("Many", CimType::Reference, true)};
    method.parameters[0].qualifiers.push_back(
        qualifier("Values", CimValue::array(CimType::String, {CimValue::string("a<b")})));
    method.parameters[2].referenceClass = "Test_Echo";
    decl.methods = {method};
    return decl;
}

ClassDecl echoClass(const std::string& text)
{
    ClassDecl decl;
    decl.name = "Test_Echo";
    decl.qualifiers.push_back(qualifier("Description", CimValue::string(text)));
    auto key = element<PropertyDecl>("Text", CimType::String);
    key.qualifiers.push_back(qualifier("Key", CimValue::boolean(true)));
    decl.properties = {key};
    return decl;
}

} // namespace

std::string describe(const CimValue& value)
{
    const std::string type = typeText(value.type(), value.isArray()) + " ";
    if (value.isNull())
        return type + "NULL";
    if (value.isArray())
    {
        std::string text = type + "{";
        for (const CimValue& item : value.elements())
            text += (text.back() == '{' ? "" : "; ") + describe(item);
        return text + "}";
    }
    if (value.type() == CimType::Reference)
        return type + value.asReference().text();
    if (isEmbedded(value.type()))
        return type + describe(value.asInstance());
    std::string text = type;
    appendText(text, value);
    return text;
}

std::string describe(const Instance& instance)
{
    std::string text = instance.className().str() + "{";
    for (const Property& property : instance.properties())
        text += (text.back() == '{' ? "" : ", ") + property.name.str() + "=" + describe(property.value);
    text += "}";
    return instance.hasPath() ? text + " at " + instance.path().text() : text;
}

Instance valuesInstance()
{
    ObjectPath peer = echoPath("p");
    ObjectPath path(kNameSpace, "Test_Values");
    path.setKey("Id", CimValue::string("a&b \"<>\t'"));
    path.setKey("Number", CimValue::uint16(7));
    path.setKey("Up", CimValue::boolean(true));
    path.setKey("When", CimValue::dateTime(*CimDateTime::parse("20260131120000.000000+060")));
    path.setKey("Peer", CimValue::reference(peer));

    Instance inner("Test_Echo");
    inner.set("Text", CimValue::string("<&>"));
    Instance outer("Test_Echo");
    outer.set("Inner", CimValue::embedded(CimType::Object, inner));

    Instance instance("Test_Values");
    instance.setPath(path);
    instance.set("Id", CimValue::string("a&b \"<>\t'"));
    instance.set("Lines", CimValue::string("one\r\ntwo\x01 \xC3\xA9\xFF"));
    instance.set("Blank", CimValue::string(" "));
    instance.set("Nothing", CimValue::null(CimType::Uint32));
    instance.set("NoList", CimValue::null(CimType::Uint32, true));
    instance.set("Up", CimValue::boolean(false));
    instance.set("Letter", CimValue::char16(u'<'));
    instance.set("Big", CimValue::uint64(18446744073709551615U));
    instance.set("Low", CimValue::sint64(INT64_MIN));
    instance.set("Ratio", CimValue::real64(0.1));
    instance.set("When", CimValue::dateTime(*CimDateTime::parse("00000001000000.000000:000")));
    instance.set("Peer", CimValue::reference(peer));
    instance.set("Outer", CimValue::embedded(CimType::Instance, outer));
    instance.set("List",
                 CimValue::array(CimType::Sint8, {CimValue::sint8(-1), CimValue::null(CimType::Sint8)}));
    instance.set("Texts", CimValue::array(CimType::String, {CimValue::string("")}));
    instance.set("NoTexts", CimValue::array(CimType::String, {}));
    instance.properties().back().classOrigin = "Test_Base";
    return instance;
}

void FakeService::enumerateInstances(const RequestContext&,
                                     const EnumerateInstancesRequest& request,
                                     Sink<Instance>& sink)
{
    deliver(ObjectPath(request.nameSpace, request.className),
            "enumerate" +
                flags({{"local", request.localOnly},
                       {"deep", request.deepInheritance},
                       {"qualifiers", request.includeQualifiers},
                       {"origin", request.includeClassOrigin}}) +
                list(request.properties),
            sink);
}

void FakeService::enumerateInstanceNames(const RequestContext&,
                                         const EnumerateInstanceNamesRequest& request,
                                         Sink<ObjectPath>& sink)
{
    deliver(ObjectPath(request.nameSpace, request.className), "names", sink);
}

Instance FakeService::getInstance(const RequestContext& context, const GetInstanceRequest& request)
{
    check(request.nameSpace, request.path.className());
    if (request.path.className() == "Test_Values")
        return valuesInstance();
    return echoInstance("get " + request.path.text() +
                        flags({{"local", request.localOnly},
                               {"qualifiers", request.includeQualifiers},
                               {"origin", request.includeClassOrigin}}) +
                        list(request.properties) + " for " + context.clientAddress + " in " +
                        context.acceptLanguage);
}

ObjectPath FakeService::createInstance(const RequestContext&, const CreateInstanceRequest& request)
{
    check(request.nameSpace, request.instance.className());
    return echoPath("create " + describe(request.instance));
}

void FakeService::modifyInstance(const RequestContext&, const ModifyInstanceRequest& request)
{
    check(request.nameSpace, request.instance.className());
    if (request.instance.className() == "Test_Echo")
        throw CimError(CimStatus::NoSuchProperty,
                       "modify " + describe(request.instance) +
                           flags({{"qualifiers", request.includeQualifiers}}) + list(request.properties));
}

void FakeService::deleteInstance(const RequestContext&, const DeleteInstanceRequest& request)
{
    check(request.nameSpace, request.path.className());
    if (request.path.className() == "Test_Echo")
        throw CimError(CimStatus::NotFound, "delete " + request.path.text());
}

CimValue FakeService::getProperty(const RequestContext&, const GetPropertyRequest& request)
{
    check(request.nameSpace, request.path.className());
    if (request.path.className() == "Test_Echo")
        return CimValue::string("get " + request.property.str() + " of " + request.path.text());
    const Instance values = valuesInstance();
    const CimValue* value = values.find(request.property);
    if (value == nullptr)
        throw CimError(CimStatus::NoSuchProperty, "no property " + request.property.str());
    return *value;
}

void FakeService::setProperty(const RequestContext&, const SetPropertyRequest& request)
{
    check(request.nameSpace, request.path.className());
    if (request.path.className() == "Test_Echo")
        throw CimError(CimStatus::NotSupported,
                       "set " + request.value.name.str() + (request.value.typed ? "=" : "~") +
                           describe(request.value.value) + " of " + request.path.text());
}

void FakeService::associators(const RequestContext&, const AssociatorsRequest& request, Sink<Instance>& sink)
{
    deliver(request.path,
            "associators of " + request.path.text() + " through " + request.assocClass.str() + " to " +
                request.resultClass.str() + " as " + request.role.str() + "-" + request.resultRole.str() +
                flags({{"qualifiers", request.includeQualifiers}, {"origin", request.includeClassOrigin}}) +
                list(request.properties),
            sink);
}

void FakeService::associatorNames(const RequestContext&,
                                  const AssociatorNamesRequest& request,
                                  Sink<ObjectPath>& sink)
{
    deliver(request.path,
            "associators of " + request.path.text() + " through " + request.assocClass.str() + " to " +
                request.resultClass.str() + " as " + request.role.str() + "-" + request.resultRole.str(),
            sink);
}

void FakeService::references(const RequestContext&, const ReferencesRequest& request, Sink<Instance>& sink)
{
    deliver(request.path,
            "references of " + request.path.text() + " in " + request.resultClass.str() + " as " +
                request.role.str() +
                flags({{"qualifiers", request.includeQualifiers}, {"origin", request.includeClassOrigin}}) +
                list(request.properties),
            sink);
}

void FakeService::referenceNames(const RequestContext&,
                                 const ReferenceNamesRequest& request,
                                 Sink<ObjectPath>& sink)
{
    deliver(request.path,
            "references of " + request.path.text() + " in " + request.resultClass.str() + " as " +
                request.role.str(),
            sink);
}

MethodResult FakeService::invokeMethod(const RequestContext&, const InvokeMethodRequest& request)
{
    check(request.nameSpace, request.path.className());
    std::string text = request.path.text() + " " + request.method.str() + "(";
    for (const Argument& argument : request.arguments)
        text += (text.back() == '(' ? "" : ", ") + argument.name.str() + (argument.typed ? "=" : "~") +
                describe(argument.value);
    if (request.method == "Fail")
        throw CimError(CimStatus::MethodNotFound, text + ")");
    if (request.method == "Void")
        return {};
    return {CimValue::string(text + ")"), request.arguments};
}

ClassDecl FakeService::getClass(const RequestContext&, const GetClassRequest& request)
{
    check(request.nameSpace, request.className);
    if (request.className == "Test_Values")
        return valuesClass();
    return echoClass("class" +
                     flags({{"local", request.localOnly},
                            {"qualifiers", request.includeQualifiers},
                            {"origin", request.includeClassOrigin}}) +
                     list(request.properties));
}

void FakeService::enumerateClasses(const RequestContext&,
                                   const EnumerateClassesRequest& request,
                                   Sink<ClassDecl>& sink)
{
    const CimName name = request.className.empty() ? "Test_Echo" : request.className;
    check(request.nameSpace, name);
    deliver(name,
            sink,
            echoClass("classes of " + request.className.str() +
                      flags({{"deep", request.deepInheritance},
                             {"local", request.localOnly},
                             {"qualifiers", request.includeQualifiers},
                             {"origin", request.includeClassOrigin}})),
            valuesClass());
}

void FakeService::enumerateClassNames(const RequestContext&,
                                      const EnumerateClassNamesRequest& request,
                                      Sink<CimName>& sink)
{
    const CimName name = request.className.empty() ? "Test_Echo" : request.className;
    check(request.nameSpace, name);
    deliver<CimName>(name, sink, request.deepInheritance ? "Test_Deep" : "Test_Flat", "Test_Values");
}

QualifierDecl FakeService::getQualifier(const RequestContext&, const GetQualifierRequest& request)
{
    if (!(request.name == "Key"))
        throw CimError(CimStatus::NotFound, "no qualifier " + request.name.str());
    QualifierDecl decl;
    decl.name = "Key";
    decl.type = CimType::Boolean;
    decl.value = CimValue::boolean(false);
    decl.flavor.overridable = false;
    decl.onProperty = decl.onReference = true;
    return decl;
}

void FakeService::enumerateQualifiers(const RequestContext& context,
                                      const std::string& nameSpace,
                                      Sink<QualifierDecl>& sink)
{
    check(nameSpace, "Test_Echo");
    sink.put(getQualifier(context, {nameSpace, "Key"}));
}

} // namespace cimd
