// One function for each intrinsic operation, and one for extrinsic methods.
#include "agent/ops/Operations.h"

#include "agent/ops/Parameters.h"
#include "agent/xml/DeclarationWriter.h"
#include "agent/xml/ElementWriter.h"
#include "agent/xml/ResponseWriter.h"

#include <exception>
#include <utility>

namespace cimd
{

namespace
{

/** One request on its way through an operation. */
struct Call
{
    CimService& service;
    const RequestContext& context;
    const std::string& host;
    const WireRequest& wire;
    const ElementReader& reader;
    Parameters parameters;
    XmlWriter& xml;
    std::string& subject;

    const std::string& nameSpace() const { return wire.nameSpace; }

    CimName about(CimName name)
    {
        subject = name.str();
        return name;
    }

    /** The path completed with the request's namespace and with the name of a key that the client left out.
     */
    ObjectPath about(ObjectPath path)
    {
        subject = path.className().str();
        if (path.nameSpace().empty())
            path.setNameSpace(nameSpace());
        if (const CimValue* unnamed = path.findKey(CimName()))
            path = withKeyName(path, *unnamed);
        return path;
    }

    Instance about(Instance instance)
    {
        subject = instance.className().str();
        if (instance.hasPath())
            instance.setPath(about(instance.path()));
        return instance;
    }

  private:
    ObjectPath withKeyName(const ObjectPath& path, const CimValue& value) const
    {
        GetClassRequest request;
        request.nameSpace = path.nameSpace();
        request.className = path.className();
        request.localOnly = false;
        const ClassDecl decl = service.getClass(context, request);
        CimName key;
        for (const PropertyDecl& property : decl.properties)
        {
            if (!property.isKey())
                continue;
            if (!key.empty())
                throw CimError(CimStatus::InvalidParameter,
                               "class " + decl.name.str() +
                                   " has several keys: a key value needs its key's name");
            key = property.name;
        }
        if (key.empty())
            throw CimError(CimStatus::InvalidParameter, "class " + decl.name.str() + " has no keys");
        ObjectPath named(path.nameSpace(), path.className());
        named.setHost(path.host());
        named.setKey(key, value);
        return named;
    }
};

template <class Item, class Write>
class WritingSink : public Sink<Item>
{
  public:
    explicit WritingSink(Write write) : _write(std::move(write)) {}
    void put(const Item& item) override { _write(item); }

  private:
    Write _write;
};

/** A sink that calls `write` with each result. */
template <class Item, class Write>
WritingSink<Item, Write> sinkFor(Write write)
{
    return WritingSink<Item, Write>(std::move(write));
}

void enumerateInstances(Call& call)
{
    EnumerateInstancesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.requiredClassName("ClassName"));
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    auto sink = sinkFor<Instance>([&](const Instance& item) { writeNamedInstance(call.xml, item); });
    call.service.enumerateInstances(call.context, request, sink);
}

void enumerateInstanceNames(Call& call)
{
    EnumerateInstanceNamesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.requiredClassName("ClassName"));
    call.parameters.finish();
    auto sink = sinkFor<ObjectPath>([&](const ObjectPath& item) { writeInstanceName(call.xml, item); });
    call.service.enumerateInstanceNames(call.context, request, sink);
}

void getInstance(Call& call)
{
    GetInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    writeInstance(call.xml, call.service.getInstance(call.context, request));
}

void createInstance(Call& call)
{
    CreateInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.instance = call.about(call.parameters.instance("NewInstance"));
    call.parameters.finish();
    writeInstanceName(call.xml, call.service.createInstance(call.context, request));
}

void modifyInstance(Call& call)
{
    ModifyInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.instance = call.about(call.parameters.namedInstance("ModifiedInstance"));
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    call.service.modifyInstance(call.context, request);
}

void deleteInstance(Call& call)
{
    DeleteInstanceRequest request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.instanceName("InstanceName"));
    call.parameters.finish();
    call.service.deleteInstance(call.context, request);
}

/** What Associators and AssociatorNames have in common. */
template <class Request>
Request associatorsRequest(Call& call)
{
    Request request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.objectName("ObjectName"));
    request.assocClass = call.parameters.className("AssocClass");
    request.resultClass = call.parameters.className("ResultClass");
    request.role = call.parameters.text("Role");
    request.resultRole = call.parameters.text("ResultRole");
    return request;
}

/** What References and ReferenceNames have in common. */
template <class Request>
Request referencesRequest(Call& call)
{
    Request request;
    request.nameSpace = call.nameSpace();
    request.path = call.about(call.parameters.objectName("ObjectName"));
    request.resultClass = call.parameters.className("ResultClass");
    request.role = call.parameters.text("Role");
    return request;
}

/** What Associators and References have in common. */
template <class Request>
void objectOptions(Call& call, Request& request)
{
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    request.properties = call.parameters.propertyList("PropertyList");
}

auto objectSink(Call& call)
{
    return sinkFor<Instance>([&call](const Instance& item)
                             { writeObjectWithPath(call.xml, call.host, item); });
}

auto objectPathSink(Call& call)
{
    return sinkFor<ObjectPath>([&call](const ObjectPath& item)
                               { writeObjectPath(call.xml, call.host, item); });
}

void associators(Call& call)
{
    auto request = associatorsRequest<AssociatorsRequest>(call);
    objectOptions(call, request);
    call.parameters.finish();
    auto sink = objectSink(call);
    call.service.associators(call.context, request, sink);
}

void associatorNames(Call& call)
{
    const auto request = associatorsRequest<AssociatorNamesRequest>(call);
    call.parameters.finish();
    auto sink = objectPathSink(call);
    call.service.associatorNames(call.context, request, sink);
}

void references(Call& call)
{
    auto request = referencesRequest<ReferencesRequest>(call);
    objectOptions(call, request);
    call.parameters.finish();
    auto sink = objectSink(call);
    call.service.references(call.context, request, sink);
}

void referenceNames(Call& call)
{
    const auto request = referencesRequest<ReferenceNamesRequest>(call);
    call.parameters.finish();
    auto sink = objectPathSink(call);
    call.service.referenceNames(call.context, request, sink);
}

void getClass(Call& call)
{
    GetClassRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.requiredClassName("ClassName"));
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    request.properties = call.parameters.propertyList("PropertyList");
    call.parameters.finish();
    writeClass(call.xml, call.service.getClass(call.context, request));
}

void enumerateClasses(Call& call)
{
    EnumerateClassesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.className("ClassName"));
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    request.localOnly = call.parameters.boolean("LocalOnly", request.localOnly);
    request.includeQualifiers = call.parameters.boolean("IncludeQualifiers", request.includeQualifiers);
    request.includeClassOrigin = call.parameters.boolean("IncludeClassOrigin", request.includeClassOrigin);
    call.parameters.finish();
    auto sink = sinkFor<ClassDecl>([&](const ClassDecl& item) { writeClass(call.xml, item); });
    call.service.enumerateClasses(call.context, request, sink);
}

void enumerateClassNames(Call& call)
{
    EnumerateClassNamesRequest request;
    request.nameSpace = call.nameSpace();
    request.className = call.about(call.parameters.className("ClassName"));
    request.deepInheritance = call.parameters.boolean("DeepInheritance", request.deepInheritance);
    call.parameters.finish();
    auto sink = sinkFor<CimName>([&](const CimName& item) { writeClassName(call.xml, item); });
    call.service.enumerateClassNames(call.context, request, sink);
}

void getQualifier(Call& call)
{
    GetQualifierRequest request;
    request.nameSpace = call.nameSpace();
    request.name = call.about(CimName(call.parameters.requiredText("QualifierName")));
    call.parameters.finish();
    writeQualifierDeclaration(call.xml, call.service.getQualifier(call.context, request));
}

void enumerateQualifiers(Call& call)
{
    call.parameters.finish();
    auto sink =
        sinkFor<QualifierDecl>([&](const QualifierDecl& item) { writeQualifierDeclaration(call.xml, item); });
    call.service.enumerateQualifiers(call.context, call.nameSpace(), sink);
}

void invokeMethod(Call& call)
{
    InvokeMethodRequest request;
    request.path = call.about(call.reader.path(call.wire.target));
    request.nameSpace = request.path.nameSpace();
    request.method = call.wire.method;
    for (const XmlElement element : call.wire.parameters)
        request.arguments.push_back(
            named(requiredAttribute(element, "NAME"), [&] { return call.reader.argument(element); }));
    const MethodResult result = call.service.invokeMethod(call.context, request);
    writeReturnValue(call.xml, result.returnValue);
    for (const Argument& argument : result.out)
        writeArgument(call.xml, argument);
}

struct Operation
{
    std::string_view name;
    void (*run)(Call& call);
    bool returnsValue; // IRETURNVALUE in the answer
};

// Every other intrinsic operation is answered with "not supported".
constexpr Operation kOperations[] = {
    {"GetInstance", getInstance, true},
    {"EnumerateInstances", enumerateInstances, true},
    {"EnumerateInstanceNames", enumerateInstanceNames, true},
    {"Associators", associators, true},
    {"AssociatorNames", associatorNames, true},
    {"References", references, true},
    {"ReferenceNames", referenceNames, true},
    {"CreateInstance", createInstance, true},
    {"ModifyInstance", modifyInstance, false},
    {"DeleteInstance", deleteInstance, false},
    {"GetClass", getClass, true},
    {"EnumerateClasses", enumerateClasses, true},
    {"EnumerateClassNames", enumerateClassNames, true},
    {"GetQualifier", getQualifier, true},
    {"EnumerateQualifiers", enumerateQualifiers, true},
};

constexpr Operation kInvokeMethod{"InvokeMethod", invokeMethod, false};

const Operation& operationFor(const WireRequest& request)
{
    if (request.extrinsic)
        return kInvokeMethod;
    for (const Operation& operation : kOperations)
        if (equalNoCase(operation.name, request.method))
            return operation;
    throw CimError(CimStatus::NotSupported, "operation " + request.method + " is not supported");
}

} // namespace

Operations::Operations(CimService& service, const Limits& limits)
    : _service(service), _limits(limits), _reader(limits)
{
}

Outcome Operations::run(const RequestContext& context,
                        const std::string& host,
                        const WireRequest& request,
                        std::string& out)
{
    Outcome outcome;
    const std::size_t start = out.size();
    ResponseWriter response(out, request);
    try
    {
        const Operation& operation = operationFor(request);
        if (request.parameters.size() > _limits.parameters)
            throw CimError(CimStatus::InvalidParameter,
                           "more than " + std::to_string(_limits.parameters) + " parameters");
        static const std::vector<XmlElement> kNone;
        Call call{
            _service,
            context,
            host,
            request,
            _reader,
            Parameters(request.extrinsic ? kNone : request.parameters, _reader, _limits.instanceProperties),
            response.xml(),
            outcome.subject};
        response.begin(operation.returnsValue);
        operation.run(call);
        response.end(operation.returnsValue);
        return outcome;
    }
    catch (const CimError& error)
    {
        outcome.error = error;
    }
    catch (const std::exception& error)
    {
        outcome.error = CimError(CimStatus::Failed, std::string("internal error: ") + error.what());
    }
    out.resize(start);
    response.error(*outcome.error);
    return outcome;
}

} // namespace cimd
