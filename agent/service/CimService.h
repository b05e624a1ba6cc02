// The operations of a CIM server, as the wire side asks for them and the provider side answers them.
#ifndef AGENT_SERVICE_CIMSERVICE_H
#define AGENT_SERVICE_CIMSERVICE_H

#include "agent/cim/CimError.h"
#include "agent/cim/CimName.h"
#include "agent/cim/CimValue.h"
#include "agent/cim/ClassDecl.h"
#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cimd
{

// Takes results one at a time, on the thread that runs the operation, while the provider produces them. An
// exception ends the operation and reaches its caller. An operation may still fail after it delivered
// results; what was delivered is then not an answer.
template <class Item>
class Sink
{
  public:
    virtual ~Sink() = default;
    // The item lives only during the call: copy what must outlive it.
    virtual void put(const Item& item) = 0;
};

// Keeps what it is given.
template <class Item>
class Collector : public Sink<Item>
{
  public:
    void put(const Item& item) override { items.push_back(item); }

    std::vector<Item> items;
};

// Who asks, and from where: passed to providers and written to the log.
struct RequestContext
{
    std::string principal;      // empty if the client did not say
    std::string clientAddress;  // "address:port"
    std::string acceptLanguage; // HTTP Accept-Language, may be empty
};

// Namespaces are given without a leading slash. Defaults are those of DSP0200.
struct EnumerateInstancesRequest
{
    std::string nameSpace;
    CimName className;
    bool localOnly = true; // accepted and ignored: servers never agreed on what it hides
    bool deepInheritance = true;
    bool includeQualifiers = false; // deprecated for instances; none are returned
    bool includeClassOrigin = false;
    PropertyList properties;
};

struct EnumerateInstanceNamesRequest
{
    std::string nameSpace;
    CimName className;
};

// Keys of a path from a client may be typed more loosely than declared (string for a date-time, any integer
// for an integer); the service makes them the declared type or answers InvalidParameter.
struct GetInstanceRequest
{
    std::string nameSpace;
    ObjectPath path;
    bool localOnly = true; // as above
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    PropertyList properties;
};

struct CreateInstanceRequest
{
    std::string nameSpace;
    Instance instance;
};

struct ModifyInstanceRequest
{
    std::string nameSpace;
    Instance instance; // with its path
    bool includeQualifiers = true;
    PropertyList properties;
};

struct DeleteInstanceRequest
{
    std::string nameSpace;
    ObjectPath path;
};

// Empty names do not filter.
struct AssociatorNamesRequest
{
    std::string nameSpace;
    ObjectPath path;
    CimName assocClass;
    CimName resultClass;
    CimName role;
    CimName resultRole;
};

struct AssociatorsRequest : AssociatorNamesRequest
{
    bool includeQualifiers = false; // as above
    bool includeClassOrigin = false;
    PropertyList properties;
};

struct ReferenceNamesRequest
{
    std::string nameSpace;
    ObjectPath path;
    CimName resultClass;
    CimName role;
};

struct ReferencesRequest : ReferenceNamesRequest
{
    bool includeQualifiers = false; // as above
    bool includeClassOrigin = false;
    PropertyList properties;
};

struct Argument
{
    CimName name;
    CimValue value;
    // False if the client did not say the type (no PARAMTYPE): the value is then a string, an array of
    // strings or NULL, and the service reads it as the type the parameter is declared with.
    bool typed = true;
};

struct GetPropertyRequest
{
    std::string nameSpace;
    ObjectPath path;
    CimName property;
};

struct SetPropertyRequest
{
    std::string nameSpace;
    ObjectPath path;
    Argument value; // under the property's name
};

struct InvokeMethodRequest
{
    std::string nameSpace;
    ObjectPath path; // without keys for a method called on the class
    CimName method;
    std::vector<Argument> arguments;
};

struct MethodResult
{
    CimValue returnValue;
    std::vector<Argument> out; // in order of declaration; parameters the provider left unset are NULL
};

struct GetClassRequest
{
    std::string nameSpace;
    CimName className;
    bool localOnly = true;
    bool includeQualifiers = true;
    bool includeClassOrigin = false;
    PropertyList properties;
};

struct EnumerateClassesRequest
{
    std::string nameSpace;
    CimName className; // empty: start at the root classes
    bool deepInheritance = false;
    bool localOnly = true;
    bool includeQualifiers = true;
    bool includeClassOrigin = false;
};

struct EnumerateClassNamesRequest
{
    std::string nameSpace;
    CimName className;
    bool deepInheritance = false;
};

struct GetQualifierRequest
{
    std::string nameSpace;
    CimName name;
};

// Every operation may be called from several threads at once and throws CimError when it fails. Paths and
// instances that come out are complete: class, property and key names in declared letter case, properties in
// class order with NULL for those the provider left out, namespace set, host empty (only the front end knows
// how it was addressed).
class CimService
{
  public:
    virtual ~CimService() = default;

    virtual void enumerateInstances(const RequestContext& context,
                                    const EnumerateInstancesRequest& request,
                                    Sink<Instance>& sink) = 0;
    virtual void enumerateInstanceNames(const RequestContext& context,
                                        const EnumerateInstanceNamesRequest& request,
                                        Sink<ObjectPath>& sink) = 0;
    virtual Instance getInstance(const RequestContext& context, const GetInstanceRequest& request) = 0;
    virtual ObjectPath createInstance(const RequestContext& context,
                                      const CreateInstanceRequest& request) = 0;
    virtual void modifyInstance(const RequestContext& context, const ModifyInstanceRequest& request) = 0;
    virtual void deleteInstance(const RequestContext& context, const DeleteInstanceRequest& request) = 0;

    // NoSuchProperty if the class lacks the property.
    virtual CimValue getProperty(const RequestContext& context, const GetPropertyRequest& request) = 0;
    // Also TypeMismatch if the value is none for the property, and InvalidParameter for a key.
    virtual void setProperty(const RequestContext& context, const SetPropertyRequest& request) = 0;

    // A path that names an existing class but no known instance gives an empty result.
    virtual void
    associators(const RequestContext& context, const AssociatorsRequest& request, Sink<Instance>& sink) = 0;
    virtual void associatorNames(const RequestContext& context,
                                 const AssociatorNamesRequest& request,
                                 Sink<ObjectPath>& sink) = 0;
    virtual void
    references(const RequestContext& context, const ReferencesRequest& request, Sink<Instance>& sink) = 0;
    virtual void referenceNames(const RequestContext& context,
                                const ReferenceNamesRequest& request,
                                Sink<ObjectPath>& sink) = 0;

    virtual MethodResult invokeMethod(const RequestContext& context, const InvokeMethodRequest& request) = 0;

    virtual ClassDecl getClass(const RequestContext& context, const GetClassRequest& request) = 0;
    virtual void enumerateClasses(const RequestContext& context,
                                  const EnumerateClassesRequest& request,
                                  Sink<ClassDecl>& sink) = 0;
    virtual void enumerateClassNames(const RequestContext& context,
                                     const EnumerateClassNamesRequest& request,
                                     Sink<CimName>& sink) = 0;
    virtual QualifierDecl getQualifier(const RequestContext& context, const GetQualifierRequest& request) = 0;
    virtual void enumerateQualifiers(const RequestContext& context,
                                     const std::string& nameSpace,
                                     Sink<QualifierDecl>& sink) = 0;
};

} // namespace cimd

#endif
