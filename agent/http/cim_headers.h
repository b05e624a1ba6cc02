// The HTTP headers of CIM-XML: what a request must carry, and what its body must agree with.
#ifndef AGENT_HTTP_CIM_HEADERS_H
#define AGENT_HTTP_CIM_HEADERS_H

#include "agent/cim/CimError.h"
#include "agent/cim/ObjectPath.h"
#include "agent/http/message.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// "root%2Finterop" gives "root/interop"; sequences that are not two hexadecimal digits stand as they are.
std::string percentDecoded(std::string_view text);

// What a request head that cannot be a CIM-XML operation is answered with: wrong target, method, content
// type, or CIM headers (DSP0200, "Encapsulation of CIM messages"). Nothing for a head that is in order.
std::optional<HttpResponse> refuseHead(const HttpRequest& head);

// A refusal with a CIMError header and the reason as text.
HttpResponse refusal(unsigned status, const std::string& cimError, const std::string& reason);

// The names of the trailers below, as a Trailer header announces them.
inline constexpr const char* kFailureTrailers = "CIMStatusCode, CIMStatusCodeDescription";

// What tells the error of an operation whose answer had begun to leave (DSP0200, "Chunked responses").
std::vector<HttpHeader> failureTrailers(const CimError& error);

// The headers of a CIM-XML answer, without its body.
HttpResponse cimResponse();

// Whether the CIMObject header of an extrinsic call ("root/interop:Class.Key="value"", percent-encoded) names
// the object of the body. Namespace, class and key names are compared without regard to case, key values by
// their text; reference keys and keys that do not follow the syntax are not looked at, for clients write them
// in many ways.
bool namesObject(std::string_view cimObject, const ObjectPath& path);

// The same for an intrinsic operation, whose header names the namespace.
bool namesNameSpace(std::string_view cimObject, std::string_view nameSpace);

} // namespace cimd

#endif
