// The envelope of a response.
#include "agent/xml/ResponseWriter.h"

namespace cimd
{

void ResponseWriter::begin(bool returnsValue)
{
    _xml.raw("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
             "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">");
    _xml.open("MESSAGE").attribute("ID", _request.messageId).attribute("PROTOCOLVERSION", "1.0").content();
    _xml.start("SIMPLERSP");
    _xml.open(responseTag()).attribute("NAME", _request.method).content();
    if (returnsValue)
        _xml.start("IRETURNVALUE");
}

void ResponseWriter::end(bool returnsValue)
{
    if (returnsValue)
        _xml.close("IRETURNVALUE");
    _xml.close(responseTag());
    _xml.raw("</SIMPLERSP></MESSAGE></CIM>\n");
}

void ResponseWriter::error(const CimError& error)
{
    begin(false);
    _xml.open("ERROR").attribute("CODE", std::to_string(error.code())).attribute("DESCRIPTION", error.what());
    _xml.empty();
    end(false);
}

} // namespace cimd
