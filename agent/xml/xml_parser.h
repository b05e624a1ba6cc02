// A strict parser of XML: a text that is well-formed and within bounds becomes a tree.
#ifndef AGENT_XML_XML_PARSER_H
#define AGENT_XML_XML_PARSER_H

#include "agent/limits/Limits.h"
#include "agent/xml/encoding.h"

#include <cstddef>
#include <cstdint>
#include <deque>
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

// The elements of a text, as views into it.
struct XmlTree
{
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Attribute
    {
        std::string_view name;
        std::string_view value; // references resolved
    };
    struct Element
    {
        std::string_view name;
        std::string_view content; // up to the first child or the end tag, as it was written
        std::uint32_t firstAttribute = 0;
        std::uint32_t attributes = 0;
        std::uint32_t parent = kNone;
        std::uint32_t firstChild = kNone;
        std::uint32_t next = kNone; // beside this one
    };

    std::vector<Element> elements; // in the order of their start tags
    std::vector<Attribute> attributes;
    std::deque<std::string> values; // of attributes, where the text has them otherwise
};

// Parses a UTF-8 text by the well-formedness rules of XML 1.0. A document type declaration may name an
// external subset, which is not read; an internal subset is refused, so that the predefined entities are the
// only ones. Runs in linear time and without recursion. Throws XmlError.
// @param text      Outlives the tree. May have the packed runs of ByteArrayPacker in its arrays: they do not
//                  count against the limits, and a value is one character in the column of an error's place.
// @param encoding  What the text was before it became UTF-8; a declaration must agree with it.
XmlTree parseXml(std::string_view text, const Limits& limits, XmlEncoding encoding = XmlEncoding::Utf8);

// Append what was written in a text that was parsed as it is meant: references resolved, line ends as "\n".
void appendText(std::string& out, std::string_view written);
void appendCharacterData(std::string& out, std::string_view written); // of a CDATA section

} // namespace cimd

#endif
