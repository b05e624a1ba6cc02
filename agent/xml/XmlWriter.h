// The writer of XML text, under the agent's names.
#ifndef AGENT_XML_XMLWRITER_H
#define AGENT_XML_XMLWRITER_H

#include "xml/XmlWriter.h"

namespace cimd
{

using cimxml::appendEscaped;
using cimxml::XmlWriter;

} // namespace cimd

#endif
