// Building and reading the tree.
#include "agent/xml/XmlDocument.h"

#include "agent/xml/xml_check.h"

#include <algorithm>
#include <cstring>

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

// Stands before each value of a plain array in place of its tags; no XML text holds it.
constexpr char kMark = '\x01';

// "<VALUE>1</VALUE><VALUE>23</VALUE>" becomes two marks and the numbers: a fifth of the text, and no
// elements.
void joinValues(std::string& text, const std::vector<TextRange>& arrays)
{
    constexpr std::string_view kStart = "<VALUE>";
    if (arrays.empty())
        return;
    std::size_t to = arrays.front().begin;
    const auto keep = [&](std::size_t from, std::size_t end)
    {
        std::memmove(&text[to], &text[from], end - from);
        to += end - from;
    };
    for (std::size_t i = 0; i < arrays.size(); ++i)
    {
        const TextRange& array = arrays[i];
        for (std::size_t at = text.find(kStart, array.begin); at < array.end; at = text.find(kStart, at))
        {
            text[to++] = kMark;
            at += kStart.size();
            const std::size_t end = text.find('<', at);
            keep(at, end);
            at = end;
        }
        keep(array.end, i + 1 < arrays.size() ? arrays[i + 1].begin : text.size());
    }
    text.resize(to);
    text.shrink_to_fit();
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
    joinValues(_text, checkXml(_text, limits, encoding));
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

PlainValues::PlainValues(XmlElement array)
{
    const char* const text = array.value();
    if (*text == kMark)
        _rest = text;
}

bool PlainValues::next(std::string_view& text)
{
    if (_rest.empty())
        return false;
    const std::size_t end = std::min(_rest.find(kMark, 1), _rest.size());
    text = _rest.substr(1, end - 1);
    _rest.remove_prefix(end);
    return true;
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
