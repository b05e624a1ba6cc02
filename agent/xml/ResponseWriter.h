// Writes CIM-XML response messages: the envelope around results, and errors.
#ifndef AGENT_XML_RESPONSEWRITER_H
#define AGENT_XML_RESPONSEWRITER_H

#include "agent/cim/CimError.h"
#include "agent/xml/request_reader.h"
#include "agent/xml/xml_text.h"

#include <functional>
#include <string>
#include <utility>

namespace cimd
{

// Envelope of the answer to one request; what an operation returns goes between begin() and end().
class ResponseWriter
{
  public:
    // `relieve` is for what has been written of a long answer, see XmlWriter.
    ResponseWriter(std::string& out, const WireRequest& request, std::function<void()> relieve = {})
        : _xml(out, std::move(relieve)), _request(request)
    {
    }

    XmlWriter& xml() { return _xml; }

    // `returnsValue` puts an IRETURNVALUE around the content of an intrinsic operation's answer.
    void begin(bool returnsValue);
    void end(bool returnsValue);
    // A whole message with an ERROR element.
    void error(const CimError& error);

  private:
    std::string_view responseTag() const { return _request.extrinsic ? "METHODRESPONSE" : "IMETHODRESPONSE"; }

    XmlWriter _xml;
    const WireRequest& _request;
};

} // namespace cimd

#endif
