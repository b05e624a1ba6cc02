// UTF-8 and the characters XML allows, under the agent's names.
#ifndef AGENT_XML_UTF8_H
#define AGENT_XML_UTF8_H

#include "xml/utf8.h"

namespace cimd
{

using cimxml::appendUtf8;
using cimxml::decodeUtf8;
using cimxml::isXmlCharacter;
using cimxml::kNoCharacter;

} // namespace cimd

#endif
