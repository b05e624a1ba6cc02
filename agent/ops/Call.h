// One request on its way through an operation.
#ifndef AGENT_OPS_CALL_H
#define AGENT_OPS_CALL_H

#include "agent/http/HttpHandler.h"
#include "agent/ops/Parameters.h"
#include "agent/ops/audit.h"
#include "agent/pull/Enumerations.h"
#include "agent/run/InFlight.h"
#include "agent/service/CimService.h"
#include "agent/xml/request_reader.h"
#include "agent/xml/xml_text.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace cimd
{

// What an operation works with. Everything it refers to outlives it.
struct Call
{
    std::string_view operation; ///< its name in the table of operations
    const CimService& service;
    const RequestContext& context;
    const std::string& host; ///< for the INSTANCEPATHs of the answer
    const WireRequest& wire;
    const ElementReader& reader;
    Parameters parameters;
    Enumerations& enumerations; ///< those that clients have opened
    HttpResponse& response;     ///< the answer; `xml` writes to its body
    AnswerStream& stream;       ///< takes the answer away in pieces
    std::chrono::seconds timeLimit;
    XmlWriter& xml;         ///< where results go
    std::string& subject;   ///< the class or qualifier the request is about, for the log
    std::uint64_t& results; ///< how many the answer holds so far, for the log
    InFlight::Entry& entry;
    std::optional<Change>& change; ///< set if the operation changes something

    const std::string& nameSpace() const { return wire.nameSpace; }

    // Says what the request is about and, with it, what to answer when time runs out.
    void setSubject(const CimName& name);

    // Each makes its argument the subject and gives it back.
    CimName about(CimName name);
    // Completed with the request's namespace and with the name of a key that the client left out.
    ObjectPath about(ObjectPath path);
    Instance about(Instance instance);

    // Of an operation that changes something: says as early and as well as possible what. For the audit.
    void willChange(Change what);

  private:
    void setLateAnswer();
    ObjectPath withKeyName(const ObjectPath& path, const CimValue& value) const;
};

// Writes each result and lets it leave.
template <class Item, class Write>
class WritingSink : public Sink<Item>
{
  public:
    WritingSink(Call& call, Write write) : _call(call), _write(std::move(write)) {}
    void put(const Item& item) override
    {
        _write(item);
        ++_call.results;
        _call.stream.flush(_call.response);
    }

  private:
    Call& _call;
    Write _write;
};

// A sink that calls `write` with each result.
template <class Item, class Write>
WritingSink<Item, Write> sinkFor(Call& call, Write write)
{
    return {call, std::move(write)};
}

} // namespace cimd

#endif
