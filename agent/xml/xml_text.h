// The text of XML, under the agent's names.
#ifndef AGENT_XML_XML_TEXT_H
#define AGENT_XML_XML_TEXT_H

#include "xml/XmlWriter.h"
#include "xml/utf8.h"

namespace cimd
{

using cimxml::appendEscaped;
using cimxml::appendUtf8;
using cimxml::decodeUtf8;
using cimxml::isXmlCharacter;
using cimxml::kNoCharacter;
using cimxml::XmlWriter;

} // namespace cimd

#endif
