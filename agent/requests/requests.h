// What clients and providers ask of the agent.
#ifndef AGENT_REQUESTS_REQUESTS_H
#define AGENT_REQUESTS_REQUESTS_H

#include "agent/cim/Argument.h"
#include "agent/cim/CimName.h"
#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"

#include <string>
#include <vector>

namespace cimd
{

// Who asks, and from where: passed to providers and written to the log.
struct RequestContext
{
    std::string principal;      // empty if the client did not say
    std::string clientAddress;  // "address:port"
    std::string acceptLanguage; // HTTP Accept-Language, may be empty
};

// What is wanted of each instance in an answer.
struct InstanceOptions
{
    bool includeClassOrigin = false;
    PropertyList properties;
};

// Namespaces are given without a leading slash. Defaults are those of DSP0200.
struct EnumerateInstancesRequest : InstanceOptions
{
    std::string nameSpace;
    CimName className;
    bool deepInheritance = true;
};

struct EnumerateInstanceNamesRequest
{
    std::string nameSpace;
    CimName className;
};

// Keys of a path from a client may be typed more loosely than declared (string for a date-time, any integer
// for an integer); the service makes them the declared type or answers InvalidParameter.
struct GetInstanceRequest : InstanceOptions
{
    std::string nameSpace;
    ObjectPath path;
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

struct AssociatorsRequest : AssociatorNamesRequest, InstanceOptions
{
};

struct ReferenceNamesRequest
{
    std::string nameSpace;
    ObjectPath path;
    CimName resultClass;
    CimName role;
};

struct ReferencesRequest : ReferenceNamesRequest, InstanceOptions
{
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

} // namespace cimd

#endif
