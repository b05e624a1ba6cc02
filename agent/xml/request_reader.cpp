// The envelope of a request.
#include "agent/xml/request_reader.h"

namespace cimd
{

namespace
{

[[noreturn]] void notValid(const std::string& what)
{
    throw RequestError(RequestError::Faulty, "request-not-valid", what);
}

// "2.3.1" is of major version "2".
void checkVersion(XmlElement element, const char* attribute, std::string_view major, const char* cimError)
{
    const std::string_view version = requiredAttribute(element, attribute);
    if (version.substr(0, version.find('.')) != major)
        throw RequestError(RequestError::Unsupported,
                           cimError,
                           std::string(attribute) + " " + std::string(version) + " is not supported, only " +
                               std::string(major) + ".x");
}

XmlElement childOf(XmlElement element, std::string_view tag)
{
    const XmlElement child = firstChild(element);
    if (!isTag(child, tag) || nextElement(child))
        notValid(std::string(element.name()) + " must hold one " + std::string(tag));
    return child;
}

void readCall(XmlElement call, const Limits& limits, WireRequest& request)
{
    request.extrinsic = isTag(call, "METHODCALL");
    if (!request.extrinsic && !isTag(call, "IMETHODCALL"))
        notValid("SIMPLEREQ must hold an IMETHODCALL or METHODCALL");
    request.method = requiredAttribute(call, "NAME");
    const XmlElement where = firstChild(call);
    if (request.extrinsic)
    {
        if (!isTag(where, "LOCALINSTANCEPATH") && !isTag(where, "LOCALCLASSPATH"))
            notValid("METHODCALL must start with a LOCALINSTANCEPATH or LOCALCLASSPATH");
        request.target = where;
    }
    else if (isTag(where, "LOCALNAMESPACEPATH"))
        request.nameSpace = ElementReader(limits).nameSpace(where);
    else
        notValid("IMETHODCALL must start with a LOCALNAMESPACEPATH");
    for (XmlElement child = nextElement(where); child; child = nextElement(child))
    {
        if (!isTag(child, request.extrinsic ? "PARAMVALUE" : "IPARAMVALUE"))
            notValid(std::string(call.name()) + " has an unexpected element " + std::string(child.name()));
        requiredAttribute(child, "NAME");
        request.parameters.push_back(child);
    }
}

void readEnvelope(XmlElement root, const Limits& limits, WireRequest& request)
{
    if (!isTag(root, "CIM"))
        notValid("the root element is " + std::string(root.name()) + ", not CIM");
    checkVersion(root, "CIMVERSION", "2", "unsupported-cim-version");
    checkVersion(root, "DTDVERSION", "2", "unsupported-dtd-version");
    const XmlElement message = childOf(root, "MESSAGE");
    checkVersion(message, "PROTOCOLVERSION", "1", "unsupported-protocol-version");
    request.messageId = requiredAttribute(message, "ID");
    if (isTag(firstChild(message), "MULTIREQ"))
        throw RequestError(
            RequestError::Unsupported, "multiple-requests-unsupported", "several operations in one message");
    if (isTag(firstChild(message), "SIMPLEEXPREQ") || isTag(firstChild(message), "MULTIEXPREQ"))
        throw RequestError(
            RequestError::Unsupported, "unsupported-operation", "exports are not received here");
    XmlElement first = firstChild(childOf(message, "SIMPLEREQ"));
    while (isTag(first, "CORRELATOR"))
        first = nextElement(first);
    if (nextElement(first))
        notValid("SIMPLEREQ must hold one call");
    readCall(first, limits, request);
}

} // namespace

WireRequest readRequest(std::string body, const Limits& limits)
try
{
    WireRequest request;
    request.document = std::make_unique<XmlDocument>(std::move(body), limits);
    readEnvelope(request.document->root(), limits, request);
    return request;
}
catch (const XmlError& error)
{
    throw RequestError(RequestError::Faulty, "request-not-well-formed", error.what());
}
catch (const CimError& error)
{
    notValid(error.what());
}

} // namespace cimd
