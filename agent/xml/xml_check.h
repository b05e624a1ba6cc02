// The check a text passes before it is parsed: is it well-formed XML, and within bounds.
#ifndef AGENT_XML_XML_CHECK_H
#define AGENT_XML_XML_CHECK_H

#include "agent/Limits.h"
#include "agent/xml/encoding.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// The text is not well-formed XML, or uses what this server does not accept; says where.
class XmlError : public std::runtime_error
{
  public:
    XmlError(std::string_view text, std::size_t offset, const std::string& what);
};

// What stands between the tags of a VALUE.ARRAY.
struct TextRange
{
    std::size_t begin;
    std::size_t end;
};

// Checks a UTF-8 text against the well-formedness rules of XML 1.0 (the tree builder behind it forgives
// much). A document type declaration may name an external subset, which is not read; an internal subset is
// refused, so that the predefined entities are the only ones. Runs in linear time and without recursion.
// Throws XmlError.
// @param encoding  What the text was before it became UTF-8; a declaration must agree with it.
// @return the arrays declared as uint8 that hold nothing but VALUEs of plain text, in their order. They may
// be
//         long: their VALUEs are no nodes, and they do not count against the limit of other text.
std::vector<TextRange>
checkXml(std::string_view text, const Limits& limits, XmlEncoding encoding = XmlEncoding::Utf8);

} // namespace cimd

#endif
