// One pass over the characters, then one over the markup.
#include "agent/xml/xml_parser.h"

#include "agent/cim/CimName.h"
#include "agent/xml/ByteArrayPacker.h"
#include "agent/xml/xml_text.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kSpecialInAttribute = "&\t\r\n";

bool isSpace(char c)
{
    return kSpace.find(c) != std::string_view::npos;
}

bool isNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isNameCharacter(char c)
{
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

void checkCharacters(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();)
    {
        if (text[at] >= ' ' && text[at] <= '~')
        {
            ++at;
            continue;
        }
        const std::size_t start = at;
        if (isRunMark(text[at]) && (at = packedRunEnd(text, at)) != start)
            continue; // the second pass sees that it is where it may be
        const char32_t c = decodeUtf8(text, at);
        if (c == kNoCharacter)
            throw XmlError(text, start, "not UTF-8");
        if (!isXmlCharacter(c))
            throw XmlError(text, start, "a character that XML does not allow");
    }
}

// The character of "amp" or "#xE9"; nothing if that is no reference.
std::optional<char32_t> referred(std::string_view name)
{
    constexpr std::pair<std::string_view, char32_t> kNamed[] = {
        {"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}};
    for (const auto& [known, character] : kNamed)
        if (name == known)
            return character;
    if (name.empty() || name.front() != '#')
        return std::nullopt;
    name.remove_prefix(1);
    const bool hex = !name.empty() && name.front() == 'x';
    name.remove_prefix(hex ? 1 : 0);
    unsigned value = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, value, hex ? 16 : 10);
    if (error != std::errc() || stop != end || !isXmlCharacter(value))
        return std::nullopt;
    return value;
}

// @param special     What is not taken over as it is: "&" and white space.
// @param whiteSpace  What stands for each such white space; the two characters of a line end are one.
void appendMeant(std::string& out, std::string_view written, std::string_view special, char whiteSpace)
{
    for (std::size_t at = 0; at < written.size();)
    {
        const std::size_t next = std::min(written.find_first_of(special, at), written.size());
        out.append(written, at, next - at);
        if (next == written.size())
            return;
        at = next + 1;
        if (written[next] == '&')
        {
            const std::size_t end = written.find(';', at);
            appendUtf8(out, *referred(written.substr(at, end - at)));
            at = end + 1;
            continue;
        }
        out += whiteSpace;
        if (written[next] == '\r' && at < written.size() && written[at] == '\n')
            ++at;
    }
}

class Parser
{
  public:
    Parser(std::string_view text, const Limits& limits, XmlEncoding encoding)
        : _text(text), _limits(limits), _encoding(encoding)
    {
    }

    XmlTree run()
    {
        constexpr std::size_t kUsual = 32; // elements of a small request
        _tree.elements.reserve(kUsual);
        _tree.attributes.reserve(kUsual);
        if (startsWith("<?xml") && _text.size() > 5 && isSpace(_text[5]))
            declaration();
        bool typeSeen = false;
        while (_at < _text.size())
        {
            if (accept("<!--"))
                comment();
            else if (accept("<?"))
                instruction();
            else if (isOpen() && accept("<![CDATA["))
                characterData();
            else if (_tree.elements.empty() && !typeSeen && accept("<!DOCTYPE"))
            {
                typeSeen = true;
                documentType();
            }
            else if (accept("</"))
                endTag();
            else if (_text[_at] == '<')
            {
                if (!isOpen() && !_tree.elements.empty())
                    fail("a second root element");
                startTag();
            }
            else
                text();
        }
        if (isOpen())
            fail("element " + std::string(open().name) + " is not closed");
        if (_tree.elements.empty())
            fail("no element");
        if (_text.size() - _packed > _limits.xmlBytes)
            throw XmlError(
                _text, 0, "more than " + std::to_string(_limits.xmlBytes) + " bytes beside arrays of uint8");
        return std::move(_tree);
    }

  private:
    [[noreturn]] void fail(const std::string& what) const { throw XmlError(_text, _at, what); }

    bool isOpen() const { return _open != XmlTree::kNone; }
    XmlTree::Element& open() { return _tree.elements[_open]; }

    // The content of the open element ends here if it has not before.
    void endContent(std::size_t at)
    {
        if (open().firstChild == XmlTree::kNone)
            open().content = _text.substr(_contentAt, at - _contentAt);
    }

    void countNode()
    {
        if (++_nodes > _limits.xmlNodes)
            fail("more than " + std::to_string(_limits.xmlNodes) + " elements, attributes and texts");
    }

    bool startsWith(std::string_view token) const { return _text.compare(_at, token.size(), token) == 0; }

    bool accept(std::string_view token)
    {
        if (!startsWith(token))
            return false;
        _at += token.size();
        return true;
    }

    std::string_view until(std::string_view token, const char* fault)
    {
        const std::size_t end = _text.find(token, _at);
        if (end == std::string_view::npos)
            fail(fault);
        const std::string_view body = _text.substr(_at, end - _at);
        _at = end + token.size();
        return body;
    }

    bool skipSpace()
    {
        const std::size_t start = _at;
        _at = std::min(_text.find_first_not_of(kSpace, _at), _text.size());
        return _at != start;
    }

    std::string_view name()
    {
        const std::size_t start = _at;
        if (_at == _text.size() || !isNameStart(_text[_at]))
            fail("a name was expected");
        while (_at < _text.size() && isNameCharacter(_text[_at]))
            ++_at;
        return _text.substr(start, _at - start);
    }

    std::string_view quoted()
    {
        const char quote = _at < _text.size() ? _text[_at] : '\0';
        if (quote != '"' && quote != '\'')
            fail("a quoted value was expected");
        ++_at;
        return until(std::string_view(&quote, 1), "an unfinished quoted value");
    }

    // ` name="value"` of the XML declaration.
    std::optional<std::string_view> declared(std::string_view name)
    {
        const std::size_t start = _at;
        if (!skipSpace() || !accept(name))
        {
            _at = start;
            return std::nullopt;
        }
        equals(name);
        return quoted();
    }

    void declaration()
    {
        accept("<?xml");
        const std::optional<std::string_view> version = declared("version");
        if (!version || version->substr(0, 2) != "1.")
            fail("an XML declaration must start with a version 1.x");
        if (const std::optional<std::string_view> encoding = declared("encoding"))
            checkEncoding(*encoding);
        declared("standalone");
        skipSpace();
        if (!accept("?>"))
            fail("the XML declaration should end here");
    }

    void checkEncoding(std::string_view name) const
    {
        const bool agrees = _encoding == XmlEncoding::Utf16
                                ? equalNoCase(name, "utf-16")
                                : equalNoCase(name, "utf-8") || equalNoCase(name, "us-ascii");
        if (!agrees)
            fail("encoding " + std::string(name) + " is declared, but the text is taken for " +
                 (_encoding == XmlEncoding::Utf16 ? "UTF-16" : "UTF-8"));
    }

    void characterData()
    {
        countNode();
        until("]]>", "an unfinished CDATA section");
    }

    void comment()
    {
        until("--", "an unfinished comment");
        if (!accept(">"))
            fail("\"--\" inside a comment");
    }

    void instruction()
    {
        if (equalNoCase(name(), "xml"))
            fail("an XML declaration that is not at the start");
        until("?>", "an unfinished processing instruction");
    }

    void documentType()
    {
        while (_at < _text.size() && _text[_at] != '>')
        {
            if (_text[_at] == '[')
                fail("an internal document type subset is not accepted");
            if (_text[_at] == '<')
                fail("\"<\" in a document type declaration");
            if (_text[_at] == '"' || _text[_at] == '\'')
                quoted();
            else
                ++_at;
        }
        if (!accept(">"))
            fail("an unfinished document type declaration");
    }

    void endTag()
    {
        const std::size_t start = _at - 2;
        const std::string_view tag = name();
        skipSpace();
        if (!isOpen() || tag != open().name)
            fail("end tag " + std::string(tag) + " closes nothing");
        if (!accept(">"))
            fail("\">\" was expected");
        endContent(start);
        _previous = std::exchange(_open, open().parent);
        --_depth;
    }

    // Makes a place for an element behind its predecessor or in its parent.
    std::uint32_t link()
    {
        const auto index = static_cast<std::uint32_t>(_tree.elements.size());
        if (_previous != XmlTree::kNone)
            _tree.elements[_previous].next = index;
        else if (isOpen())
        {
            endContent(_at);
            open().firstChild = index;
        }
        XmlTree::Element& element = _tree.elements.emplace_back();
        element.parent = _open;
        element.firstAttribute = static_cast<std::uint32_t>(_tree.attributes.size());
        return index;
    }

    void startTag()
    {
        countNode();
        const std::uint32_t index = link();
        ++_at;
        const std::string_view tag = name();
        _tree.elements[index].name = tag;
        for (;;)
        {
            const bool space = skipSpace();
            if (accept("/>"))
            {
                _previous = index;
                return;
            }
            if (accept(">"))
                break;
            if (!space)
                fail("white space was expected after " + std::string(tag));
            attribute(_tree.elements[index]);
        }
        if (_depth == _limits.xmlDepth)
            fail("elements nested deeper than " + std::to_string(_limits.xmlDepth));
        ++_depth;
        _open = index;
        _previous = XmlTree::kNone;
        _contentAt = _firstTextAt = _at;
        if (tag == "VALUE.ARRAY")
            packedRun();
    }

    void packedRun()
    {
        const std::size_t start = _at;
        _at = packedRunEnd(_text, _at);
        _packed += _at - start;
        _firstTextAt = _at;
    }

    void equals(std::string_view attribute)
    {
        skipSpace();
        if (!accept("="))
            fail("\"=\" was expected after attribute " + std::string(attribute));
        skipSpace();
    }

    void attribute(XmlTree::Element& element)
    {
        const std::string_view attribute = name();
        const auto first = _tree.attributes.begin() + element.firstAttribute;
        if (std::any_of(first,
                        _tree.attributes.end(),
                        [&](const XmlTree::Attribute& other) { return other.name == attribute; }))
            fail("attribute " + std::string(attribute) + " twice");
        if (element.attributes == _limits.xmlAttributes)
            fail("more than " + std::to_string(_limits.xmlAttributes) + " attributes");
        countNode();
        equals(attribute);
        std::string_view value = quoted();
        if (value.find('<') != std::string_view::npos)
            fail("\"<\" in attribute " + std::string(attribute));
        references(value);
        if (value.find_first_of(kSpecialInAttribute) != std::string_view::npos)
        {
            std::string& meant = _tree.values.emplace_back();
            appendMeant(meant, value, kSpecialInAttribute, ' ');
            value = meant;
        }
        _tree.attributes.push_back({attribute, value});
        ++element.attributes;
    }

    void text()
    {
        // What an element begins with is kept with it and takes no node of its own.
        if (_at != _firstTextAt)
            countNode();
        const std::size_t end = std::min(_text.find('<', _at), _text.size());
        const std::string_view run = _text.substr(_at, end - _at);
        if (!isOpen() && run.find_first_not_of(kSpace) != std::string_view::npos)
            fail("text outside the root element");
        if (run.find("]]>") != std::string_view::npos)
            fail("\"]]>\" in text");
        references(run);
        _at = end;
    }

    void references(std::string_view run) const
    {
        for (std::size_t at = run.find('&'); at != std::string_view::npos; at = run.find('&', at + 1))
        {
            const std::size_t end = run.find(';', at);
            if (end == std::string_view::npos || !referred(run.substr(at + 1, end - at - 1)))
                fail("\"&\" that starts no known reference");
        }
    }

    std::string_view _text;
    const Limits& _limits;
    const XmlEncoding _encoding;
    std::size_t _at = 0;
    std::size_t _nodes = 0;
    std::size_t _firstTextAt = 0; // behind the last start tag
    std::size_t _contentAt = 0;   // the same, before a packed run
    std::size_t _packed = 0;
    XmlTree _tree;
    std::uint32_t _open = XmlTree::kNone;     // the element whose end tag is to come next
    std::uint32_t _previous = XmlTree::kNone; // its last child that is complete
    std::size_t _depth = 0;
};

std::string place(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t start = before.rfind('\n');
    const std::size_t column = before.size() - (start == std::string_view::npos ? 0 : start + 1) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
}

} // namespace

XmlError::XmlError(std::string_view text, std::size_t offset, const std::string& what)
    : std::runtime_error(place(text, offset) + what)
{
}

XmlTree parseXml(std::string_view text, const Limits& limits, XmlEncoding encoding)
{
    checkCharacters(text);
    return Parser(text, limits, encoding).run();
}

void appendText(std::string& out, std::string_view written)
{
    appendMeant(out, written, "&\r", '\n');
}

void appendCharacterData(std::string& out, std::string_view written)
{
    appendMeant(out, written, "\r", '\n');
}

} // namespace cimd
