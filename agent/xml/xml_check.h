// The check a text passes before it is parsed: is it well-formed XML, and within bounds.
#ifndef AGENT_XML_XML_CHECK_H
#define AGENT_XML_XML_CHECK_H

#include "agent/limits/Limits.h"
#include "agent/xml/encoding.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimd
{

// The text is not well-formed XML, or uses what this server does not accept; says where.
class XmlError : public std::runtime_error
{
  public:
    XmlError(std::string_view text, std::size_t offset, const std::string& what);
};

// Checks a UTF-8 text against the well-formedness rules of XML 1.0 (the tree builder behind it forgives
// much). A document type declaration may name an external subset, which is not read; an internal subset is
// refused, so that the predefined entities are the only ones. Runs in linear time and without recursion.
// Throws XmlError.
// @param text      May have the packed runs of ByteArrayPacker in its arrays: they do not count against the
//                  limits, and a value is one character in the column of an error's place.
// @param encoding  What the text was before it became UTF-8; a declaration must agree with it.
void checkXml(std::string_view text, const Limits& limits, XmlEncoding encoding = XmlEncoding::Utf8);

} // namespace cimd

#endif
