// Writes XML text: tags, attributes and escaped character data.
#ifndef XML_XMLWRITER_H
#define XML_XMLWRITER_H

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace cimxml
{

// Appends `text` so that an XML reader gets the same text back from an element or an attribute: markup
// characters and the white space that readers would normalise are escaped. What XML cannot carry (control
// characters, bytes that are not UTF-8) becomes U+FFFD, because a stray byte in one property must not cost a
// client the whole answer.
void appendEscaped(std::string& out, std::string_view text);

// Appends elements to a string. The calls must balance; nothing is checked and nothing is kept, so the string
// may be emptied between calls when an answer leaves in pieces.
class XmlWriter
{
  public:
    // `relieve` may take the text away; it is called in between when one element holds very much.
    explicit XmlWriter(std::string& out, std::function<void()> relieve = {})
        : _out(out), _relieve(std::move(relieve))
    {
    }

    // "<TAG"; attributes may follow, then content(), empty() or text().
    XmlWriter& open(std::string_view tag);
    XmlWriter& attribute(std::string_view name, std::string_view value);
    // ">": children follow, then close().
    void content() { _out += '>'; }
    // "/>": no children.
    void empty() { _out += "/>"; }
    // "</TAG>"
    void close(std::string_view tag);

    void start(std::string_view tag)
    {
        open(tag);
        content();
    }
    // "<TAG>text</TAG>"
    void element(std::string_view tag, std::string_view text);
    void text(std::string_view text) { appendEscaped(_out, text); }
    // Markup made elsewhere.
    void raw(std::string_view markup) { _out += markup; }

    std::string& out() { return _out; }
    // For those who write much in one go: now the text may leave.
    void relieve()
    {
        if (_relieve)
            _relieve();
    }

  private:
    std::string& _out;
    std::function<void()> _relieve;
};

} // namespace cimxml

#endif
