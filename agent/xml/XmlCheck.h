// The check a text passes before it is parsed: is it well-formed XML, and within bounds.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimd
{

/** The text is not well-formed XML, or uses what this server does not accept; says where. */
class XmlError : public std::runtime_error
{
  public:
    XmlError(std::string_view text, std::size_t offset, const std::string& what);
};

/** Attributes one element may have; CIM-XML needs nine. */
constexpr std::size_t kXmlAttributes = 32;

/**
 * Elements, attributes and runs of text a text may have: each takes some 50 bytes of tree however short it is
 * written. An array of 30,000 values fits.
 */
constexpr std::size_t kXmlNodes = 64 * 1024;

/**
 * Checks a UTF-8 text against the well-formedness rules of XML 1.0 (the tree builder behind it forgives
 * much). A document type declaration may name an external subset, which is not read; an internal subset is
 * refused, so that the predefined entities are the only ones. Runs in linear time and without recursion.
 * Throws XmlError.
 * @param maxDepth  Elements that may be open at once.
 */
void checkXml(std::string_view text, std::size_t maxDepth);

} // namespace cimd
