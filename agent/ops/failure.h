// The answer to an operation that failed.
#ifndef AGENT_OPS_FAILURE_H
#define AGENT_OPS_FAILURE_H

#include "agent/cim/CimError.h"
#include "agent/http/message.h"
#include "agent/xml/request_reader.h"

#include <chrono>
#include <string>

namespace cimd
{

// Makes `response` say nothing but the error: in its body and, should the answer have begun, in its
// trailers.
void writeFailure(HttpResponse& response, const WireRequest& request, const CimError& error);

// The answer to an operation that was not done in time. `subject` is the class it is about, if it has one.
HttpResponse lateAnswer(const WireRequest& request, const std::string& subject, std::chrono::seconds limit);

} // namespace cimd

#endif
