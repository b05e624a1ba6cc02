// Reads a CIM-XML request message up to its parameters.
#ifndef AGENT_XML_REQUEST_READER_H
#define AGENT_XML_REQUEST_READER_H

#include "agent/cim/ObjectPath.h"
#include "agent/xml/ElementReader.h"
#include "agent/xml/XmlDocument.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace cimd
{

// A message that cannot be answered as a CIM operation: why, and DSP0200's CIMError header.
class RequestError : public std::runtime_error
{
  public:
    enum Kind
    {
        Faulty,     ///< the client made a mistake
        Unsupported ///< the message may be in order, but this server does not do that
    };

    RequestError(Kind kind, const char* cimError, const std::string& what)
        : std::runtime_error(what), _kind(kind), _cimError(cimError)
    {
    }

    Kind kind() const { return _kind; }
    // "request-not-well-formed" ...; empty where the standard has no word for it.
    const std::string& cimError() const { return _cimError; }

  private:
    Kind _kind;
    std::string _cimError;
};

// One IMETHODCALL or METHODCALL. The parameters point into the document.
struct WireRequest
{
    std::unique_ptr<XmlDocument> document;
    std::string messageId;
    std::string method;
    bool extrinsic = false;             ///< METHODCALL
    std::string nameSpace;              ///< of an IMETHODCALL
    XmlElement target;                  ///< LOCALINSTANCEPATH or LOCALCLASSPATH of a METHODCALL
    std::vector<XmlElement> parameters; ///< IPARAMVALUE or PARAMVALUE elements
};

// Versions accepted are CIMVERSION 2.x, DTDVERSION 2.x and PROTOCOLVERSION 1.x (DSP0200, DSP0201). Throws
// RequestError for what is not one simple request of that kind.
WireRequest readRequest(std::string body, const Limits& limits);

} // namespace cimd

#endif
