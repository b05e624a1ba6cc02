// From a parsed CIM-XML request to the service and back to a CIM-XML response.
#ifndef AGENT_OPS_OPERATIONS_H
#define AGENT_OPS_OPERATIONS_H

#include "agent/http/HttpHandler.h"
#include "agent/limits/Limits.h"
#include "agent/ops/audit.h"
#include "agent/pull/Enumerations.h"
#include "agent/run/InFlight.h"
#include "agent/service/CimService.h"
#include "agent/xml/request_reader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// What became of a request, for the log.
struct Outcome
{
    std::string_view operation;    ///< name from the table of operations; empty for an unknown one
    std::string subject;           ///< class or qualifier the request was about; may be empty
    std::uint64_t results = 0;     ///< instances, paths, classes ... in the answer
    std::optional<Change> change;  ///< of an operation that changes something, as far as it got
    std::optional<CimError> error; ///< what the client was told, if the operation failed
};

// Any number of threads may run operations.
class Operations
{
  public:
    // `service` outlives the object.
    Operations(const CimService& service, const Limits& limits, std::string spoolDirectory);

    // Runs the request and writes the response message, errors included, to the body of `response`, whose
    // pieces leave through `stream`: nothing is thrown but lack of memory. When an operation fails after it
    // produced results, the body holds the error alone and the trailers say it, too.
    // @param host   How the client addressed this server; stands in the INSTANCEPATHs of the answer.
    // @param entry  Is told what the request is about as soon as that is known.
    Outcome run(const RequestContext& context,
                const std::string& host,
                const WireRequest& request,
                InFlight::Entry& entry,
                HttpResponse& response,
                AnswerStream& stream);

    Enumerations& enumerations() { return _enumerations; }

  private:
    const CimService& _service;
    const Limits _limits;
    ElementReader _reader;
    Enumerations _enumerations;
};

} // namespace cimd

#endif
