// Building and reading the tree.
#include "agent/xml/XmlDocument.h"

#include "agent/xml/ByteArrayPacker.h"
#include "agent/xml/xml_check.h"

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

// CIM-XML has no namespaces, but some tools qualify everything they write.
void dropPrefix(XmlElement root)
{
    const std::string_view name = root.name();
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos ||
        root.attribute(("xmlns:" + std::string(name.substr(0, colon))).c_str()).empty())
        return;
    struct Walker : pugi::xml_tree_walker
    {
        explicit Walker(std::string_view prefixed) : prefix(prefixed) {}

        bool for_each(pugi::xml_node& node) override
        {
            const std::string_view qualified = node.name();
            if (qualified.substr(0, prefix.size()) == prefix)
                node.set_name(std::string(qualified.substr(prefix.size())).c_str());
            return true;
        }

        const std::string prefix;
    };
    Walker walker(name.substr(0, colon + 1));
    root.traverse(walker);
    walker.for_each(root);
}

} // namespace

XmlDocument::XmlDocument(std::string text, const Limits& limits) : _text(std::move(text))
{
    const XmlEncoding encoding = toUtf8(_text);
    if (encoding == XmlEncoding::Utf16)
        _text = packByteArrays(_text);
    checkXml(_text, limits, encoding);
    // White space is kept: a string value may consist of nothing else. The text that an element begins with
    // is its value: an array has an element and a text for each of its values.
    const unsigned options = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_embed_pcdata;
    const pugi::xml_parse_result result =
        _tree.load_buffer_inplace(_text.data(), _text.size(), options, pugi::encoding_utf8);
    if (!result)
        throw XmlError({}, 0, result.description());
    dropPrefix(root());
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
    std::string text = element.value(); // see parse_embed_pcdata above
    for (const pugi::xml_node node : element.children())
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            text += node.value();
    return text;
}

} // namespace cimd
