// A parsed XML text and the few ways in which CIM-XML looks at its elements.
#ifndef AGENT_XML_XMLDOCUMENT_H
#define AGENT_XML_XMLDOCUMENT_H

#include "agent/limits/Limits.h"
#include "agent/xml/xml_parser.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// An element of a document, which outlives it, or none.
class XmlElement
{
  public:
    XmlElement() = default;
    XmlElement(const XmlTree& tree, std::uint32_t index)
        : _tree(index == XmlTree::kNone ? nullptr : &tree), _index(index)
    {
    }

    explicit operator bool() const { return _tree != nullptr; }

    // Of no element these give nothing.
    std::string_view name() const { return node().name; }
    std::optional<std::string_view> attribute(std::string_view name) const;
    // What stands between its start tag and its first child or end tag, as it was written.
    std::string_view content() const { return node().content; }
    XmlElement parent() const { return other(node().parent); }

    friend XmlElement firstChild(XmlElement element) { return element.other(element.node().firstChild); }
    // The next element beside this one.
    friend XmlElement nextElement(XmlElement element) { return element.other(element.node().next); }

  private:
    XmlElement other(std::uint32_t index) const { return _tree ? XmlElement(*_tree, index) : XmlElement(); }
    const XmlTree::Element& node() const;

    const XmlTree* _tree = nullptr;
    std::uint32_t _index = 0;
};

class XmlDocument
{
  public:
    // Takes the text, UTF-8 or UTF-16, and parses it, see parseXml(). Throws XmlError.
    // Where the root element has a namespace prefix, the tree has the elements of that prefix without it.
    // What ByteArrayPacker has packed are no elements in the tree but the VALUE.ARRAY's own content.
    XmlDocument(std::string text, const Limits& limits);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    XmlElement root() const { return {_tree, 0}; }

  private:
    std::string _text;
    XmlTree _tree; // of views into the text
};

inline bool isTag(XmlElement element, std::string_view tag)
{
    return tag == element.name();
}

// All character data of an element without children, CDATA sections included, white space kept.
std::string textOf(XmlElement element);

} // namespace cimd

#endif
