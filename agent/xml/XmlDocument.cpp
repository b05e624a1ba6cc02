// Reading the tree.
#include "agent/xml/XmlDocument.h"

#include "agent/xml/ByteArrayPacker.h"

#include <algorithm>

namespace cimd
{

namespace
{

// CIM-XML has no namespaces, but some tools qualify everything they write.
void dropPrefix(XmlTree& tree)
{
    const std::string_view root = tree.elements.front().name;
    const std::size_t colon = root.find(':');
    if (colon == std::string_view::npos ||
        !XmlElement(tree, 0).attribute("xmlns:" + std::string(root.substr(0, colon))))
        return;
    const std::string_view prefix = root.substr(0, colon + 1);
    for (XmlTree::Element& element : tree.elements)
        if (element.name.substr(0, prefix.size()) == prefix)
            element.name.remove_prefix(prefix.size());
}

} // namespace

XmlDocument::XmlDocument(std::string text, const Limits& limits) : _text(std::move(text))
{
    const XmlEncoding encoding = toUtf8(_text);
    if (encoding == XmlEncoding::Utf16)
        _text = packByteArrays(_text);
    _tree = parseXml(_text, limits, encoding);
    dropPrefix(_tree);
}

const XmlTree::Element& XmlElement::node() const
{
    static const XmlTree::Element kNoElement;
    return _tree ? _tree->elements[_index] : kNoElement;
}

std::optional<std::string_view> XmlElement::attribute(std::string_view name) const
{
    const XmlTree::Element& element = node();
    for (std::uint32_t i = 0; i < element.attributes; ++i)
        if (const XmlTree::Attribute& attribute = _tree->attributes[element.firstAttribute + i];
            attribute.name == name)
            return attribute.value;
    return std::nullopt;
}

std::string textOf(XmlElement element)
{
    constexpr std::string_view kDataStart = "<![CDATA[";
    std::string_view rest = element.content();
    std::string text;
    while (!rest.empty())
    {
        const std::size_t markup = std::min(rest.find('<'), rest.size());
        appendText(text, rest.substr(0, markup));
        rest.remove_prefix(markup);
        const bool isData = rest.substr(0, kDataStart.size()) == kDataStart;
        const std::string_view end = isData ? "]]>" : rest.substr(0, 2) == "<?" ? "?>" : "-->";
        const std::size_t stop = rest.find(end);
        if (stop == std::string_view::npos)
            break; // the text ends here
        if (isData)
            appendCharacterData(text, rest.substr(kDataStart.size(), stop - kDataStart.size()));
        rest.remove_prefix(stop + end.size());
    }
    return text;
}

} // namespace cimd
