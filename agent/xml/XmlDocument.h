// A parsed XML text and the few ways in which CIM-XML looks at its elements.
#ifndef AGENT_XML_XMLDOCUMENT_H
#define AGENT_XML_XMLDOCUMENT_H

#include "agent/limits/Limits.h"

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace cimd
{

using XmlElement = pugi::xml_node;

// Owns the tree; XmlElements point into it.
class XmlDocument
{
  public:
    // Takes the text, UTF-8 or UTF-16, checks it (see checkXml()) and builds the tree in it. Throws XmlError.
    // Where the root element has a namespace prefix, the tree has the elements of that prefix without it.
    // What ByteArrayPacker has packed are no elements in the tree but the VALUE.ARRAY's own text.
    XmlDocument(std::string text, const Limits& limits);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    XmlElement root() const { return _tree.document_element(); }

  private:
    std::string _text;
    pugi::xml_document _tree;
};

// First child element, comments, text and processing instructions left out; an empty handle if there is
// none.
XmlElement firstChild(XmlElement element);

// Next element beside this one, an empty handle after the last.
XmlElement nextElement(XmlElement element);

inline bool isTag(XmlElement element, std::string_view tag)
{
    return tag == element.name();
}

// All character data of the element, CDATA sections included, white space kept.
std::string textOf(XmlElement element);

} // namespace cimd

#endif
