// Error messages and their trailers.
#include "agent/ops/failure.h"

#include "agent/http/cim_headers.h"
#include "agent/xml/ResponseWriter.h"

namespace cimd
{

void writeFailure(HttpResponse& response, const WireRequest& request, const CimError& error)
{
    response.body.clear();
    ResponseWriter(response.body, request).error(error);
    response.trailers = failureTrailers(error);
}

HttpResponse lateAnswer(const WireRequest& request, const std::string& subject, std::chrono::seconds limit)
{
    HttpResponse response = cimResponse();
    writeFailure(response,
                 request,
                 CimError(CimStatus::Failed,
                          request.method + (subject.empty() ? "" : " of " + subject) +
                              " did not finish within " + std::to_string(limit.count()) + " s"));
    return response;
}

} // namespace cimd
