// Building and reading the tree.
#include "agent/xml/XmlDocument.h"

#include "agent/xml/XmlCheck.h"

namespace cimd
{

namespace
{

XmlElement skipToElement(pugi::xml_node node)
{
    while (node && node.type() != pugi::node_element)
        node = node.next_sibling();
    return node;
}

} // namespace

XmlDocument::XmlDocument(std::string text, std::size_t maxDepth) : _text(std::move(text))
{
    checkXml(_text, maxDepth);
    // White space is kept: a string value may consist of nothing else.
    const pugi::xml_parse_result result = _tree.load_buffer_inplace(
        _text.data(), _text.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
    if (!result)
        throw XmlError({}, 0, result.description());
}

XmlElement firstChild(XmlElement element)
{
    return skipToElement(element.first_child());
}

XmlElement nextElement(XmlElement element)
{
    return skipToElement(element.next_sibling());
}

std::string textOf(XmlElement element)
{
    std::string text;
    for (const pugi::xml_node node : element.children())
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            text += node.value();
    return text;
}

} // namespace cimd
